#include "hosts/composition/chosen_database.h"

#include <optional>
#include <utility>

#include "platform/failure.h"

namespace vok::windows {
namespace {

/// Keeps what it is told until it is opened, and then tells it in the platform's order.
class ChosenConnection : public Connection {
 public:
  explicit ChosenConnection(const StoreChoice& choice) : choice_(choice) {}

  std::string ConnectionString() const override {
    return inner_ ? inner_->ConnectionString() : text_;
  }
  void SetConnectionString(const std::string& text) override { text_ = text; }
  void SetCursorLocation(CursorLocation location) override { location_ = location; }
  void SetCommandTimeout(int32_t seconds) override { timeout_ = seconds; }

  void Open(const std::string& connection_string, const std::string& user,
            const std::string& password, int32_t options) override {
    const bool given = !connection_string.empty();
    const ChosenStore store = choice_.For(given ? connection_string : text_);
    auto connection = store.database.NewConnection();
    if (!given) connection->SetConnectionString(store.connection_text);
    if (location_) connection->SetCursorLocation(*location_);
    if (timeout_) connection->SetCommandTimeout(*timeout_);
    connection->Open(given ? store.connection_text : "", user, password, options);
    inner_ = std::move(connection);
    database_ = &store.database;
  }

  void Close() override { Inner().Close(); }
  void BeginSave() override { Inner().BeginSave(); }
  void BeginChange() override { Inner().BeginChange(); }
  void CommitSave() override { Inner().CommitSave(); }
  void RollbackSave() noexcept override {
    if (inner_) inner_->RollbackSave();
  }

  Database& database() const {
    Inner();
    return *database_;
  }
  Connection& Inner() const {
    if (!inner_) throw Failure(failure_number::kObjectClosed, "The connection is not open.");
    return *inner_;
  }

  static ChosenConnection& Of(Connection& connection) {
    return dynamic_cast<ChosenConnection&>(connection);
  }

 private:
  const StoreChoice& choice_;
  std::string text_;
  std::optional<CursorLocation> location_;
  std::optional<int32_t> timeout_;
  std::unique_ptr<Connection> inner_;
  Database* database_ = nullptr;
};

template <typename Port>
Port& Made(const std::unique_ptr<Port>& object) {
  if (!object) throw Failure(failure_number::kObjectClosed, "It has no connection.");
  return *object;
}

class ChosenRecordset : public Recordset {
 public:
  void SetCursorLocation(CursorLocation location) override { location_ = location; }
  void SetActiveConnection(Connection* connection) override {
    if (connection == nullptr) {
      Made(inner_).SetActiveConnection(nullptr);
      return;
    }
    const auto& chosen = ChosenConnection::Of(*connection);
    inner_ = chosen.database().NewRecordset();
    if (location_) inner_->SetCursorLocation(*location_);
    inner_->SetActiveConnection(&chosen.Inner());
  }
  void SetCursorType(CursorType type) override { Made(inner_).SetCursorType(type); }
  void SetLockType(LockType type) override { Made(inner_).SetLockType(type); }
  void Open(const std::string& source, CursorType type, LockType lock, int32_t options) override {
    Made(inner_).Open(source, type, lock, options);
  }
  void Close() override { Made(inner_).Close(); }
  int32_t RecordCount() const override { return Made(inner_).RecordCount(); }
  bool EndOfFile() const override { return Made(inner_).EndOfFile(); }
  void MoveFirst() override { Made(inner_).MoveFirst(); }
  void MoveNext() override { Made(inner_).MoveNext(); }
  void SetFilter(const std::string& criterion) override { Made(inner_).SetFilter(criterion); }
  void Find(const std::string& criterion) override { Made(inner_).Find(criterion); }
  int32_t FieldCount() const override { return Made(inner_).FieldCount(); }
  std::string FieldName(int32_t index) const override { return Made(inner_).FieldName(index); }
  Value Field(int32_t index) const override { return Made(inner_).Field(index); }
  Value Field(const std::string& name) const override { return Made(inner_).Field(name); }
  void AddNew() override { Made(inner_).AddNew(); }
  void SetField(const std::string& name, const Value& value) override {
    Made(inner_).SetField(name, value);
  }
  void Update() override { Made(inner_).Update(); }

 private:
  std::optional<CursorLocation> location_;
  std::unique_ptr<Recordset> inner_;
};

class ChosenCommand : public Command {
 public:
  void SetActiveConnection(Connection& connection) override {
    const auto& chosen = ChosenConnection::Of(connection);
    inner_ = chosen.database().NewCommand();
    inner_->SetActiveConnection(chosen.Inner());
  }
  void SetCommandText(const std::string& text) override { Made(inner_).SetCommandText(text); }
  void Execute(int32_t options) override { Made(inner_).Execute(options); }

 private:
  std::unique_ptr<Command> inner_;
};

class ChosenCatalog : public DatabaseCatalog {
 public:
  explicit ChosenCatalog(const StoreChoice& choice) : choice_(choice) {}

  void Create(const std::string& connection_string) override {
    const ChosenStore store = choice_.For(connection_string);
    inner_ = store.database.NewCatalog();
    inner_->Create(store.connection_text);
  }
  void Keep() override { Made(inner_).Keep(); }
  void SetActiveConnection(Connection& connection) override {
    const auto& chosen = ChosenConnection::Of(connection);
    inner_ = chosen.database().NewCatalog();
    inner_->SetActiveConnection(chosen.Inner());
  }
  std::vector<std::string> TableNames() const override { return Made(inner_).TableNames(); }
  int32_t ColumnCount(const std::string& table) const override {
    return Made(inner_).ColumnCount(table);
  }
  void AppendTable(const TableDefinition& table) override { Made(inner_).AppendTable(table); }
  void AppendColumn(const std::string& table, const ColumnDefinition& column) override {
    Made(inner_).AppendColumn(table, column);
  }
  void AppendIndex(const std::string& table, const IndexDefinition& index) override {
    Made(inner_).AppendIndex(table, index);
  }

 private:
  const StoreChoice& choice_;
  std::unique_ptr<DatabaseCatalog> inner_;
};

}  // namespace

std::unique_ptr<Connection> ChosenDatabase::NewConnection() {
  return std::make_unique<ChosenConnection>(choice_);
}

std::unique_ptr<Recordset> ChosenDatabase::NewRecordset() {
  return std::make_unique<ChosenRecordset>();
}

std::unique_ptr<Command> ChosenDatabase::NewCommand() { return std::make_unique<ChosenCommand>(); }

std::unique_ptr<DatabaseCatalog> ChosenDatabase::NewCatalog() {
  return std::make_unique<ChosenCatalog>(choice_);
}

}  // namespace vok::windows
