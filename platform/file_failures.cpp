#include "platform/file_failures.h"

#include "platform/failure.h"

namespace vok {
namespace {

const char* AdviceOn(int32_t number) {
  switch (number) {
    case failure_number::kFileNotFound:
      return "Check the name.";
    case failure_number::kPathNotFound:
      return "Check that the folder exists.";
    case failure_number::kPermissionDenied:
      return "Check the permissions of the file and its folder.";
    case failure_number::kFileExists:
      return "A file of that name is in the way: choose another name.";
    case failure_number::kDiskFull:
      return "Free space on the disk, or choose another folder.";
    default:
      return "";
  }
}

}  // namespace

void ThrowFileFailure(int32_t number, const std::string& what, const std::string& path,
                      const std::string& words, const std::string& advice) {
  const std::string then = advice.empty() ? AdviceOn(number) : advice;
  throw Failure(
      number, "Cannot " + what + " \"" + path + "\": " + words + (then.empty() ? "" : ". ") + then);
}

void ThrowNoOrdinaryFile(const std::string& what, const std::string& path) {
  ThrowFileFailure(failure_number::kPathAccess, what, path, "it is a device or a pipe",
                   "Give the name of an ordinary file.");
}

void ThrowClaimed(const std::string& path) {
  throw Failure(failure_number::kPermissionDenied,
                "Permission denied: another run is writing \"" + path +
                    "\" now; wait until it has ended, or choose another output path");
}

void ThrowNothingToCommit(const std::string& path) {
  ThrowFileFailure(failure_number::kInvalidCall, "write", path,
                   "its new contents were given up or are in place");
}

void CheckPathText(const std::string& path) {
  if (path.empty()) throw Failure(failure_number::kBadFileName, "Bad file name: it is empty");
  if (path.find('\0') != std::string::npos) {
    throw Failure(failure_number::kBadFileName, "Bad file name: it holds a NUL character");
  }
}

}  // namespace vok
