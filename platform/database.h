// Relational data access, in the words of the platform's data objects (ADO, ADOX).
//
// Failures are the provider's and carry its numbers: 3265 no such field or table in the collection,
// -2147217865 no such table, -2147217900 bad statement, -2147217873 a key that exists already,
// -2147467259 a file that cannot be opened, is locked or damaged.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/value.h"

namespace vok {

enum class CursorLocation : int32_t { kServer = 2, kClient = 3 };
enum class CursorType : int32_t { kUnspecified = -1, kForwardOnly = 0, kDynamic = 2, kStatic = 3 };
enum class LockType : int32_t { kUnspecified = -1, kReadOnly = 1, kOptimistic = 3 };
inline constexpr int32_t kUnspecifiedOptions = -1;

class Connection {
 public:
  virtual ~Connection() = default;
  /// After `Open` the text is the one that the provider reports.
  virtual std::string ConnectionString() const = 0;
  virtual void SetConnectionString(const std::string& text) = 0;
  virtual void SetCursorLocation(CursorLocation location) = 0;
  /// Seconds; also how long a lock of another process is waited for.
  virtual void SetCommandTimeout(int32_t seconds) = 0;
  /// An empty `connection_string` means the one that was set.
  virtual void Open(const std::string& connection_string, const std::string& user,
                    const std::string& password, int32_t options) = 0;
  virtual void Close() = 0;

  /// Groups the statements up to `CommitSave` so that all or none of them hold. The platform's own
  /// database keeps its order of plain statements: there the three do nothing.
  virtual void BeginSave() = 0;
  /// As `BeginSave`, for a change that is none of the platform's own order of statements: its
  /// database takes this one for a transaction too.
  virtual void BeginChange() { BeginSave(); }
  virtual void CommitSave() = 0;
  virtual void RollbackSave() noexcept = 0;
};

class Recordset {
 public:
  virtual ~Recordset() = default;
  virtual void SetCursorLocation(CursorLocation location) = 0;
  /// nullptr detaches an open record set from its connection.
  virtual void SetActiveConnection(Connection* connection) = 0;
  virtual void SetCursorType(CursorType type) = 0;
  virtual void SetLockType(LockType type) = 0;
  /// `source` is a statement or a bare table name. Type, lock and options of -1: those that were
  /// set.
  virtual void Open(const std::string& source, CursorType type, LockType lock, int32_t options) = 0;
  virtual void Close() = 0;

  virtual int32_t RecordCount() const = 0;
  virtual bool EndOfFile() const = 0;
  virtual void MoveFirst() = 0;
  virtual void MoveNext() = 0;
  /// From now on only rows that satisfy the criterion are seen, and the first of them is the
  /// current one; "" shows all. A criterion is "field = value" or "field=value", the value a number
  /// or a text in single quotes. Failures: 3001 for any other text, 3265 for an unknown field, 3251
  /// for a provider without criteria.
  virtual void SetFilter(const std::string& criterion);
  /// Moves to the first row, from the current one forward, that satisfies the criterion; to the end
  /// when none does. Failures as those of `SetFilter`.
  virtual void Find(const std::string& criterion);

  virtual int32_t FieldCount() const = 0;
  virtual std::string FieldName(int32_t index) const = 0;
  /// The current row's field, by position from 0 or by name without regard to case.
  virtual Value Field(int32_t index) const = 0;
  virtual Value Field(const std::string& name) const = 0;

  /// `AddNew` starts a row, `SetField` assigns to it, `Update` stores it. A row that was not
  /// updated is dropped by `Close`.
  virtual void AddNew() = 0;
  virtual void SetField(const std::string& name, const Value& value) = 0;
  virtual void Update() = 0;
};

class Command {
 public:
  virtual ~Command() = default;
  virtual void SetActiveConnection(Connection& connection) = 0;
  virtual void SetCommandText(const std::string& text) = 0;
  virtual void Execute(int32_t options) = 0;
};

/// ADO data types of columns.
enum class ColumnType : int32_t { kInteger = 3, kDate = 7, kBoolean = 11, kText = 202 };

struct ColumnDefinition {
  std::string name;
  ColumnType type = ColumnType::kText;
  int32_t size = 0;  ///< UTF-16 units of a text; 0: the provider's default length
  bool nullable = false;
};

struct TableDefinition {
  std::string name;
  std::vector<ColumnDefinition> columns;
};

struct IndexDefinition {
  std::string name;
  std::string column;
  bool primary_key = false;
  bool unique = false;
  bool clustered = false;
  bool allow_nulls = true;
};

/// Structure of a database (ADOX).
class DatabaseCatalog {
 public:
  virtual ~DatabaseCatalog() = default;
  /// Makes a new database file and leaves it as the active one. Fails when the file exists. Where
  /// the provider can, nothing stands on the disk before `Keep`.
  virtual void Create(const std::string& connection_string) = 0;
  /// What was made since `Create` is complete: the catalog writes it, whole or not at all, and is
  /// not connected any more. A provider that wrote each step as it came has nothing left to do.
  virtual void Keep() {}
  virtual void SetActiveConnection(Connection& connection) = 0;
  virtual std::vector<std::string> TableNames() const = 0;
  virtual int32_t ColumnCount(const std::string& table) const = 0;
  virtual void AppendTable(const TableDefinition& table) = 0;
  virtual void AppendColumn(const std::string& table, const ColumnDefinition& column) = 0;
  virtual void AppendIndex(const std::string& table, const IndexDefinition& index) = 0;
};

/// Makes the data objects. They may outlive each other only as the platform allows: a record set
/// that is not detached and a command need their connection.
class Database {
 public:
  virtual ~Database() = default;
  virtual std::unique_ptr<Connection> NewConnection() = 0;
  virtual std::unique_ptr<Recordset> NewRecordset() = 0;
  virtual std::unique_ptr<Command> NewCommand() = 0;
  virtual std::unique_ptr<DatabaseCatalog> NewCatalog() = 0;
  /// A record set that is open on `source` over a connection of its own, made from
  /// `connection_text`; cursor, lock and options are the platform's defaults. Failure 3706 when no
  /// provider takes that text, else the provider's.
  virtual std::unique_ptr<Recordset> OpenRecordset(const std::string& source,
                                                   const std::string& connection_text);
};

}  // namespace vok
