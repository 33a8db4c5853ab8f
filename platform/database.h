// Relational data access: a database file, its rows and its structure.
//
// Failures are the provider's and carry its numbers: 3265 no such field or table in the collection,
// 3021 no current row, -2147217865 no such table, -2147217900 bad statement, -2147217873 a key that
// exists already, -2147467259 a file that cannot be opened, is locked or damaged.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/files.h"
#include "platform/value.h"

namespace vok {

/// A row's fields by name, in the order in which they are assigned.
using Fields = std::vector<std::pair<std::string, Value>>;

/// Rows that are read one after the other. The first is the current one at the beginning.
class Rows {
 public:
  virtual ~Rows() = default;
  virtual int32_t Count() const = 0;
  virtual bool AtEnd() const = 0;
  virtual void MoveFirst() = 0;
  virtual void MoveNext() = 0;

  virtual int32_t FieldCount() const = 0;
  virtual std::string FieldName(int32_t index) const = 0;
  /// The current row's field, by position from 0 or by name without regard to case.
  virtual Value Field(int32_t index) const = 0;
  virtual Value Field(const std::string& name) const = 0;

  /// Lets the provider free them. Nothing may be called afterwards.
  virtual void Close() {}
};

/// The rows of a whole table, to which rows can be added. Needs its connection.
class WritableTable : public Rows {
 public:
  /// Stores one row, which becomes the last and current one. Fields that are not given are NULL.
  virtual void Add(const Fields& fields) = 0;
};

/// Rows out of a file of their own, which can be searched. A criterion is "field = value" or
/// "field=value", the value a number or a text in single quotes. Failures: 3001 for any other text,
/// 3265 for an unknown field.
class Recordset : public Rows {
 public:
  /// From now on only rows that satisfy the criterion are seen, and the first of them is the
  /// current one; "" shows all.
  virtual void SetFilter(const std::string& criterion) = 0;
  /// Moves to the first row, from the current one forward, that satisfies the criterion; to the end
  /// when none does.
  virtual void Find(const std::string& criterion) = 0;
};

/// Types of columns, by their ADO numbers.
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

/// The tables, columns and indexes of a database. Table names count without regard to case.
class DatabaseStructure {
 public:
  virtual ~DatabaseStructure() = default;
  virtual std::vector<std::string> TableNames() const = 0;
  virtual int32_t ColumnCount(const std::string& table) const = 0;
  virtual void AppendTable(const TableDefinition& table) = 0;
  virtual void AppendColumn(const std::string& table, const ColumnDefinition& column) = 0;
  virtual void AppendIndex(const std::string& table, const IndexDefinition& index) = 0;
};

/// A file that is being made. Where the provider can, nothing stands on the disk before `Keep`.
class NewDatabase {
 public:
  virtual ~NewDatabase() = default;
  virtual DatabaseStructure& Structure() = 0;
  /// The structure is complete: writes the file, whole or not at all. Nothing may be called
  /// afterwards. A provider that wrote each step as it came has nothing left to do.
  virtual void Keep() = 0;
};

/// What the statements of a transaction are for.
enum class Purpose {
  /// Saving one set. The platform's own database keeps its order of plain statements: it makes no
  /// transaction of them.
  kSave,
  /// Any other change. It is a transaction everywhere.
  kChange
};

/// An open database file; closed when it goes.
class Connection {
 public:
  virtual ~Connection() = default;
  /// The rows that the statement, or bare table name, gives at this moment. They outlive the
  /// connection.
  virtual std::unique_ptr<Rows> Query(const std::string& statement) = 0;
  virtual std::unique_ptr<WritableTable> OpenTable(const std::string& name) = 0;
  virtual void Execute(const std::string& statement) = 0;
  virtual std::unique_ptr<DatabaseStructure> OpenStructure() = 0;

  /// For `Transaction`.
  virtual void Begin(Purpose purpose) = 0;
  virtual void Commit() = 0;
  virtual void Rollback() noexcept = 0;
};

/// Statements of which all or none hold, where the purpose allows it: what was not committed when
/// it goes is undone. The connection outlives it.
class Transaction {
 public:
  Transaction(Connection& connection, Purpose purpose) : connection_(connection) {
    connection_.Begin(purpose);
  }
  ~Transaction() {
    if (!committed_) connection_.Rollback();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit() {
    connection_.Commit();
    committed_ = true;
  }

 private:
  Connection& connection_;
  bool committed_ = false;
};

/// Opens and makes database files. Paths are the system's, with "\". It outlives all that it gives.
class Database {
 public:
  virtual ~Database() = default;
  /// Opens an existing file. `timeout`: seconds that a statement, or a lock of another process, is
  /// waited for; 0 waits without end.
  virtual std::unique_ptr<Connection> Open(const std::string& path, int32_t timeout) = 0;
  /// Opens an existing file for its structure alone, with the provider's own time-out.
  virtual std::unique_ptr<DatabaseStructure> OpenStructure(const std::string& path) = 0;
  /// Fails when the file exists.
  virtual std::unique_ptr<NewDatabase> Create(const std::string& path) = 0;
  /// Opens a record set that stands in a file of its own. Failure 3706 where nothing reads those.
  virtual std::unique_ptr<Recordset> OpenRecordset(const std::string& path);
};

enum class DatabaseKind {
  kNone,    ///< the file is missing
  kSqlite,  ///< perhaps a settings file of ours
  kJet,     ///< of any version, ACE's too
  kOther
};

/// Failures are those of `ReadBeginning`.
DatabaseKind KindOfDatabase(const Files& files, const std::string& path);

}  // namespace vok
