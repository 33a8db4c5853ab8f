// Opening the settings database, and what its statements share.
#pragma once

#include <string>

#include "env/environment.h"
#include "platform/host.h"
#include "settings/obj_rs.h"

namespace vok {

/// Connection text of the database in the settings folder.
std::string SettingsConnectionText(const Environment& environment);

/// The settings database, connected, with a time-out of 20 seconds.
objRs OpenSettings(const Host& host, const Environment& environment);

/// `statement` and the trimmed name in quotes. The name is put in as it stands: a `like` takes its
/// wildcards for such, and a quote in it spoils the statement, which then fails.
std::string NamedSetStatement(const std::string& statement, const std::string& name);

/// The statements of one save, all or none of them: what was not committed when it goes is undone.
class SaveGroup {
 public:
  explicit SaveGroup(Connection& connection) : connection_(connection) { connection_.BeginSave(); }
  ~SaveGroup() {
    if (!committed_) connection_.RollbackSave();
  }
  SaveGroup(const SaveGroup&) = delete;
  SaveGroup& operator=(const SaveGroup&) = delete;

  void Commit() {
    connection_.CommitSave();
    committed_ = true;
  }

 private:
  Connection& connection_;
  bool committed_ = false;
};

}  // namespace vok
