#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "native.h"
#include "platform/failure.h"
#include "tests/support/failing_files.h"
#include "tests/support/failures.h"
#include "tests/support/temporary_folder.h"

namespace vok {
namespace {

namespace number = failure_number;

class FilesTest : public testing::Test {
 protected:
  std::string At(const std::string& name) const { return folder_.path() + "\\" + name; }
  std::string Text(const std::string& name) const { return ReadWholeFile(files_, At(name)); }
  std::ptrdiff_t EntryCount() const {
    return std::distance(std::filesystem::directory_iterator(folder_.path()), {});
  }

  test::TemporaryFolder folder_;
  test::NativeFiles files_;
};

TEST_F(FilesTest, WritesReadsAndDeletesUnderAnyName) {
  const std::string deep = "deep\\" + std::string(120, 'a');
  for (const std::string& folder : {std::string("deep"), std::string("deep"), deep}) {
    files_.CreateDirectory(At(folder));
    EXPECT_TRUE(files_.IsDirectory(At(folder)));
    EXPECT_FALSE(files_.Exists(At(folder)));
  }
  for (const std::string& name : {std::string("plain.txt"), std::string("דוח חודשי.txt"),
                                  std::string("отчёт.txt"), deep + "/" + std::string(120, 'b')}) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(files_.Exists(At(name)));
    files_.Append(At(name), "one\r\n");
    files_.Append(At(name), "two");
    EXPECT_EQ(Text(name), "one\r\ntwo");
    EXPECT_TRUE(files_.Exists(At(name)));
    EXPECT_FALSE(files_.IsDirectory(At(name)));
    WriteWholeFile(files_, At(name), "");
    EXPECT_EQ(Text(name), "");
    files_.Delete(At(name));
    EXPECT_FALSE(files_.Exists(At(name)));
  }
}

TEST_F(FilesTest, ReplacesTheWholeFileOrNothingWhereverAWriteGivesUp) {
  WriteWholeFile(files_, At("out.xlsX"), "old");
  test::FailingFiles failing(files_, Failure(number::kDiskFull, "full"));
  int failures = 0;
  for (failing.fail_at = 1; Text("out.xlsX") == "old"; ++failing.fail_at) {
    failing.calls = 0;
    const auto write = [&] { WriteWholeFile(failing, At("out.xlsX"), "new"); };
    failures += test::NumberOf(write) != 0 ? 1 : 0;
    EXPECT_EQ(EntryCount(), 1);
  }
  EXPECT_EQ(failures, 3);
  EXPECT_EQ(Text("out.xlsX"), "new");
}

TEST_F(FilesTest, AnOpenFileKeepsItsContentsWhetherOrNotItCanBeReplaced) {
  WriteWholeFile(files_, At("ledger.cub"), "old");
  const auto open = files_.Open(At("ledger.cub"));
  const int32_t refused = test::NumberOf([&] { WriteWholeFile(files_, At("ledger.cub"), "new"); });
  if (refused != 0) {  // Wine's file system, and others of Windows that are not NTFS
    EXPECT_EQ(refused, number::kPermissionDenied);
  }
  std::string held(3, ' ');
  open->Read(0, std::as_writable_bytes(std::span(held)));
  EXPECT_EQ(held, "old");
  EXPECT_EQ(Text("ledger.cub"), refused == 0 ? "new" : "old");
  EXPECT_EQ(EntryCount(), 1);
}

TEST_F(FilesTest, SaysWhatFailedOnWhichFile) {
  files_.CreateDirectory(At("folder"));
  files_.Append(At("file"), "x");
  const auto open = [&](const std::string& path) { files_.Open(path); };
  const auto replace = [&](const std::string& path) { files_.Replace(path); };
  const auto append = [&](const std::string& path) { files_.Append(path, "x"); };
  const auto remove = [&](const std::string& path) { files_.Delete(path); };
  const auto create = [&](const std::string& path) { files_.CreateDirectory(path); };
  const auto modified = [&](const std::string& path) { files_.LastModified(path); };
  const auto change = [&](const std::string& path) { files_.ChangeDirectory(path); };
  const struct {
    int32_t wanted;
    std::string name;
    std::function<void(const std::string&)> action;
  } rows[] = {
      {number::kFileNotFound, "none", open},     {number::kPathNotFound, "no\\none", open},
      {number::kPathNotFound, "file\\x", open},  {number::kPathAccess, "folder", open},
      {number::kPathAccess, "folder", replace},  {number::kPathNotFound, "no\\out", replace},
      {number::kPathAccess, "folder", append},   {number::kPathNotFound, "no\\log", append},
      {number::kFileNotFound, "none", remove},   {number::kPathAccess, "folder", remove},
      {number::kFileExists, "file", create},     {number::kPathNotFound, "no\\deep", create},
      {number::kFileNotFound, "none", modified}, {number::kPathNotFound, "no\\none", change},
      {number::kPathNotFound, "file", change},
  };
  for (const auto& [wanted, name, action] : rows) {
    const Failure failure = test::FailureOf([&, &act = action, &file = name] { act(At(file)); });
    EXPECT_EQ(failure.number(), wanted) << failure.description();
    EXPECT_NE(failure.description().find(files_.NativePath(name)), std::string::npos);
  }
  for (const std::string& path : {std::string(), At(std::string("file\0x", 6))}) {
    EXPECT_EQ(test::NumberOf([&] { files_.Delete(path); }), number::kBadFileName);
    EXPECT_FALSE(files_.Exists(path));
  }
  EXPECT_TRUE(files_.Exists(At("file")));
}

TEST_F(FilesTest, IniTextsAreCutToTheBuffer) {
  const std::string file = At("Qel.ini");
  const std::string beyond = At("הג\\Qel.ini");
  files_.CreateDirectory(At("הג"));
  WriteWholeFile(files_, beyond, "[Qel]\r\nQelUILanguage=1\r\n");
  WriteWholeFile(files_, file,
                 "[Other]\r\nQelUILanguage=9\r\n[Qel]\r\nQelUILanguage = \"2\" \r\nLong=" +
                     std::string(300, 'x') + "\r\n");
  const struct {
    const char* section;
    const char* key;
    uint32_t size;
    std::string value;
    std::string path;
  } rows[] = {
      {"Qel", "QelUILanguage", 255, "1", beyond},
      {"qel", "QELUILANGUAGE", 255, "2", file},
      {"Qel", "None", 255, "", file},
      {"None", "Long", 255, "", file},
      {"Qel", "Long", 255, std::string(254, 'x'), file},
  };
  test::NativeRegistry registry;
  for (const auto& row : rows) {
    std::string buffer(255, ' ');
    EXPECT_EQ(registry.PrivateProfileString(row.section, row.key, buffer, row.size, row.path),
              row.value.size());
    EXPECT_EQ(buffer.substr(0, buffer.find('\0')), row.value) << row.key << row.size;
    EXPECT_EQ(buffer.size(), 255U);
  }
}

}  // namespace
}  // namespace vok
