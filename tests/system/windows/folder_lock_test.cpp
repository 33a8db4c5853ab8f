#include "providers/database/sqlite/folder_lock.h"

#include <gtest/gtest.h>

#include <thread>

#include "native.h"
#include "platform/failure.h"
#include "tests/support/temporary_folder.h"

namespace vok {
namespace {

TEST(FolderLock, KeepsOthersOutOfFoldersOfAnyName) {
  const test::TemporaryFolder folder;
  test::NativeFiles files;
  for (const char* name : {"plain", "הגדרות 📗"}) {
    const std::string inner = folder.path() + "/" + name;
    files.CreateDirectory(inner);
    const std::string file = files.NativePath(inner + "/CubToQel.mdb");
    const FolderLock alone(file, FolderLock::Kind::kAlone, 1);
    // The lock is a thread's: one that has it already would get it again.
    std::thread([&] {
      EXPECT_THROW(FolderLock(file, FolderLock::Kind::kShared, 1), Failure) << name;
    }).join();
  }
}

}  // namespace
}  // namespace vok
