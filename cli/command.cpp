#include "cli/command.h"

#include <iostream>

#include "env/directories.h"
#include "env/environment.h"
#include "platform/failure.h"
#include "settings/schema.h"
#include "settings/store.h"

namespace vok::cli {

void FindDatabase(Session& session) {
  const Host& host = session.host();
  FindSettingsFolder(host, session.publics().environment);
  const std::string database = SettingsDatabase(session.publics().environment.SettingsFolder);
  if (host.files.Exists(database)) return;
  throw Failure(failure_number::kDatabaseNotFound,
                "Database not Found: " + host.files.NativePath(database) +
                    "; make it with vokcube settings import, or name another folder with "
                    "--settings-folder");
}

void PrepareDatabase(Session& session) {
  const Host& host = session.host();
  Environment& environment = session.publics().environment;
  FindSettingsFolder(host, environment);
  if (!host.files.IsDirectory(environment.SettingsFolder)) {
    MakeDirectories(host, environment.SettingsFolder);
  }
  if (host.files.Exists(SettingsDatabase(environment.SettingsFolder))) {
    OpenSettings(host, environment);  // one that cannot be used ends here, told once
  }
  CreateDB(host, environment, environment.SettingsFolder);
}

std::string ReadWholeFile(const Files& files, const std::string& path) {
  const auto mapped = files.Map(path);
  const auto bytes = mapped->Bytes();
  return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

void WriteOutput(Files& files, const std::string& path, const std::string& text) {
  if (path.empty() || path == "-") {
    std::cout << text;
  } else {
    WriteWholeFile(files, path, text);
  }
}

}  // namespace vok::cli
