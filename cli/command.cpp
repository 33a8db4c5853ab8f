#include "cli/command.h"

#include "env/environment.h"
#include "platform/failure.h"

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

}  // namespace vok::cli
