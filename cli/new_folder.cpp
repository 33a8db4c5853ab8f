#include "cli/new_folder.h"

#include <system_error>
#include <utility>

#include "env/directories.h"
#include "platform/failure.h"
#include "platform/whole_path.h"

namespace vok::cli {

void CheckIsNew(const Host& host, const std::string& path) {
  if (!host.files.IsDirectory(path) && !host.files.Exists(path)) return;
  throw Failure(failure_number::kFileExists,
                host.files.NativePath(path) + " is there already; name a new folder");
}

NewFolder::NewFolder(const Host& host, std::string path) : host_(host), path_(std::move(path)) {
  CheckIsNew(host, path_);
  for (std::filesystem::path folder = PathOfUtf8(path_); !std::filesystem::exists(folder);
       folder = folder.parent_path()) {
    made_.push_back(folder);
  }
  MakeDirectories(host_, path_);
}

NewFolder::~NewFolder() {
  for (const std::filesystem::path& each : made_) {
    std::error_code left;
    std::filesystem::remove(each, left);
  }
}

std::string NewFolder::Path(const std::string& file) {
  std::string path = path_ + "/" + file;
  made_.insert(made_.begin(), PathOfUtf8(path));
  return path;
}

void NewFolder::Write(const std::string& file, const std::string& text) {
  WriteWholeFile(host_.files, Path(file), text);
}

}  // namespace vok::cli
