#include "providers/database/ado/ado_connection.h"

#include <utility>
#include <vector>

#include "platform/failure.h"
#include "providers/database/ado/adox_structure.h"

namespace vok::windows {
namespace {

std::vector<std::string> EmptyTexts(const Fields& fields) {
  std::vector<std::string> names;
  for (const auto& [name, value] : fields) {
    const auto* text = value.As<std::string>();
    if (text != nullptr && text->empty()) names.push_back(name);
  }
  return names;
}

/// A provider that makes text columns so that they refuse "" is told to take it, by the first row
/// that it refuses.
class AdoTable : public AdoRows {
 public:
  AdoTable(const AdoRows& rows, const Object& connection, std::string name)
      : AdoRows(rows), connection_(connection), name_(std::move(name)) {}

  void Add(const Fields& fields) override {
    try {
      AdoRows::Add(fields);
    } catch (const Failure&) {
      if (!MakeTakeEmptyTexts(EmptyTexts(fields))) throw;
      AdoRows::Add(fields);
    }
  }

 private:
  /// False: that was not the reason, or it cannot be changed.
  bool MakeTakeEmptyTexts(const std::vector<std::string>& columns) {
    if (columns.empty()) return false;
    try {
      Abandon();  // a table that is open cannot be changed
      const bool changed = AdoxStructure(connection_).AllowEmptyTexts(name_, columns);
      Reopen();
      return changed;
    } catch (const Failure&) {
      return false;
    }
  }

  Object connection_;
  std::string name_;
};

}  // namespace

AdoConnection::AdoConnection(const std::string& connection_string, int32_t timeout) {
  store_.ADOConnect(connection_string, static_cast<int16_t>(timeout));
}

std::unique_ptr<Rows> AdoConnection::Query(const std::string& statement) {
  store_.SQL = statement;
  return store_.GetRsReadOnly();
}

std::unique_ptr<WritableTable> AdoConnection::OpenTable(const std::string& name) {
  store_.SQL = name;
  return std::make_unique<AdoTable>(*store_.GetRs(), store_.OpenedConnection(), name);
}

void AdoConnection::Execute(const std::string& statement) {
  store_.SQL = statement;
  store_.RunCommand();
}

std::unique_ptr<DatabaseStructure> AdoConnection::OpenStructure() {
  return std::make_unique<AdoxStructure>(store_.OpenedConnection());
}

void AdoConnection::Begin(Purpose purpose) {
  if (purpose == Purpose::kSave) return;
  store_.OpenedConnection().Call(L"BeginTrans");
  in_transaction_ = true;
}

void AdoConnection::Commit() {
  if (!in_transaction_) return;
  store_.OpenedConnection().Call(L"CommitTrans");
  in_transaction_ = false;
}

void AdoConnection::Rollback() noexcept {
  if (!in_transaction_) return;
  in_transaction_ = false;
  try {
    store_.OpenedConnection().Call(L"RollbackTrans");
  } catch (const Failure&) {
    // The failure that ended the change is the one to tell; the provider takes the rest back.
  }
}

}  // namespace vok::windows
