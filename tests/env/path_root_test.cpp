
#include <gtest/gtest.h>

#include "env/directories.h"
#include "tests/support/memory_host.h"

namespace vok {
namespace {

using Folders = std::vector<std::string>;

TEST(PathRoot, IsTheDriveOrShareInLowerCase) {
  struct {
    const char* path;
    const char* root;
  } const cases[] = {
      {"D:\\reports\\x.cub", "d:\\"},
      {"C:\\", "c:\\"},
      {"C:reports\\x", "c:\\"},
      {"C:", "c:\\"},
      {"D", "d:\\"},
      {"Д", "д:\\"},
      {"\\\\srv\\share\\a\\b", "\\\\srv\\share\\"},
      {"\\\\SRV\\Share", "\\\\srv\\share\\"},
      {"\\\\Сервер\\Größe\\a", "\\\\сервер\\größe\\"},
      {"\\\\s\\h\\", "\\\\s\\h\\"},
  };
  const test::SimpleLocale locale;
  for (const auto& [path, root] : cases) EXPECT_EQ(GetPathRoot(locale, path), root) << path;
  for (const char* path : {"", "\\", "\\a\\b", "a\\b", "ab\\c", "reports", "reports\\c:\\", "/home",
                           "\\\\srv", "\\\\srv\\", "\\\\srv\\\\a", "\\\\\\share\\a", "\\\\"}) {
    EXPECT_EQ(GetPathRoot(locale, path), std::nullopt) << path;
  }
}

TEST(Directories, AreMadeFromTheRootDown) {
  struct {
    const char* path;
    Folders made;
  } const cases[] = {
      {"C:\\Data\\Log", {"C:\\Data", "C:\\Data\\Log"}},
      {"\\\\srv\\share\\a\\b", {"\\\\srv\\share\\a", "\\\\srv\\share\\a\\b"}},
      {"\\\\srv\\share", {}},
      {"C:", {}},
      {"/a/b\\Log", {"/a", "/a/b", "/a/b\\Log"}},
      {"d", {"d"}},
      {"d/e", {"d", "d/e"}},
      {"there/new", {"there/new"}},
  };
  for (const auto& [path, made] : cases) {
    test::MemoryHost memory;
    memory.files.folders.insert("there");
    MakeDirectories(memory.host, path);
    EXPECT_EQ(memory.files.made, made) << path;
  }
}

TEST(Directories, StopAtTheFolderThatCannotBeMade) {
  test::MemoryHost memory;
  memory.files.refused.insert("a/b");
  EXPECT_THROW(MakeDirectories(memory.host, "a/b/c"), Failure);
  EXPECT_EQ(memory.files.made, Folders{"a"});
}

}  // namespace
}  // namespace vok
