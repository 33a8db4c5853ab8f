// A connection of the platform's data objects.
#pragma once

#include <memory>
#include <string>

#include "platform/database.h"
#include "providers/database/ado/obj_rs.h"

namespace vok::windows {

class AdoConnection : public Connection {
 public:
  AdoConnection(const std::string& connection_string, int32_t timeout);

  std::unique_ptr<Rows> Query(const std::string& statement) override;
  std::unique_ptr<WritableTable> OpenTable(const std::string& name) override;
  void Execute(const std::string& statement) override;
  std::unique_ptr<DatabaseStructure> OpenStructure() override;

  /// A save is not a transaction here.
  void Begin(Purpose purpose) override;
  void Commit() override;
  void Rollback() noexcept override;

 private:
  objRs store_;
  bool in_transaction_ = false;
};

}  // namespace vok::windows
