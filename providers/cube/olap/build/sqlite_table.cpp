#include <sqlite3.h>

#include <array>
#include <charconv>
#include <exception>
#include <utility>

#include "platform/utf8.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/bytes.h"

namespace vok::olap {
namespace {

struct Closer {
  void operator()(sqlite3* handle) const { sqlite3_close(handle); }
};

/// An opened database, closed when the last of its readers is gone. One transaction shows all of
/// them the same state of it, and keeps writers out that would change the file in its place.
class Database {
 public:
  Database(const Files& files, std::string path)
      : path_(std::move(path)), file_(files.Open(path_)) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(files.NativePath(path_).c_str(), &handle,
                                     SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
    handle_.reset(handle);
    if (code != SQLITE_OK) {
      throw BadInput(path_, "cannot be opened: " + std::string(sqlite3_errmsg(handle)));
    }
    sqlite3_busy_timeout(handle, kBusyMilliseconds);
    constexpr const char* kBegin = "BEGIN; SELECT name FROM sqlite_schema LIMIT 1";
    if (sqlite3_exec(handle, kBegin, nullptr, nullptr, nullptr) != SQLITE_OK) throw Refused();
    before_ = std::exchange(file_, files.Open(path_));  // it may have been written to until now
    has_log_ = HasLog(files);
  }

  sqlite3* handle() const { return handle_.get(); }
  const std::string& path() const { return path_; }
  Failure Refused() const {
    return HasChanged() ? FileChanged(path_) : BadInput(path_, sqlite3_errmsg(handle()));
  }
  /// Whether something wrote into the file that does not know of its readers, such as cp.
  bool HasChanged() const { return !has_log_ && file_->HasChanged(); }
  void CheckUnchanged() const {
    if (HasChanged()) throw FileChanged(path_);
  }

 private:
  static constexpr int kBusyMilliseconds = 5000;

  /// Writers may move what stands in such a log into the file while it is read: the log has it for
  /// the reader too.
  bool HasLog(const Files& files) const {
    const std::string log = sqlite3_filename_wal(sqlite3_db_filename(handle(), "main"));
    return files.Exists(log) && files.Open(log)->Size() > 0;
  }

  std::string path_;
  // Both stay until the handle is closed: to close a file gives up all locks that this process has
  // on it. `before_` was opened before the state that is read began.
  std::unique_ptr<const FileReader> before_, file_;
  std::unique_ptr<sqlite3, Closer> handle_;
  bool has_log_ = false;
};

class Statement {
 public:
  Statement(std::shared_ptr<const Database> database, const std::string& sql)
      : database_(std::move(database)) {
    if (sqlite3_prepare_v2(database_->handle(), sql.c_str(), -1, &handle_, nullptr) != SQLITE_OK) {
      throw database_->Refused();
    }
  }
  ~Statement() { sqlite3_finalize(handle_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  bool Step() {
    const int code = sqlite3_step(handle_);
    if (code != SQLITE_ROW && code != SQLITE_DONE) throw database_->Refused();
    return code == SQLITE_ROW;
  }
  void Bind(const std::string& text) {
    sqlite3_bind_text(handle_, 1, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  }
  std::string_view Text(int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle_, column));
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(handle_, column))};
  }
  sqlite3_stmt* handle() const { return handle_; }

 private:
  std::shared_ptr<const Database> database_;
  sqlite3_stmt* handle_ = nullptr;
};

std::vector<std::string> FirstColumn(Statement& statement) {
  std::vector<std::string> values;
  while (statement.Step()) values.emplace_back(statement.Text(0));
  return values;
}

std::string QuotedName(const std::string& name) {
  std::string quoted = "\"";
  for (const char letter : name) quoted += letter == '"' ? "\"\"" : std::string(1, letter);
  return quoted + "\"";
}

std::string SelectText(const std::string& table, const std::vector<std::string>& columns) {
  std::string sql = "SELECT ";
  for (const std::string& column : columns) sql += QuotedName(column) + ", ";
  return sql + "NULL FROM " + QuotedName(table);
}

/// Not for several threads at once.
class SqliteReader {
 public:
  SqliteReader(const std::shared_ptr<const Database>& database, const std::string& table,
               const std::vector<std::string>& columns)
      : where_(database->path() + ", table " + table),
        row_count_(CountRows(database, table)),
        statement_(database, SelectText(table, columns)),
        fields_(columns.size()),
        numbers_(columns.size()),
        database_(database) {}

  bool Next() {
    // A statement that is done, or failed, would begin anew.
    if (std::exchange(is_done_, true) || !statement_.Step()) return false;
    ++row_;
    for (std::size_t column = 0; column < fields_.size(); ++column) ReadField(column);
    is_done_ = false;
    return true;
  }

  std::span<const Field> Fields() const { return fields_; }
  std::string PlaceOf(uint64_t row) const { return where_ + ", row " + std::to_string(row); }
  uint64_t Line() const { return row_; }
  void CheckUnchanged() const { database_->CheckUnchanged(); }
  double Done() const {
    return row_count_ == 0 ? 1 : static_cast<double>(row_) / static_cast<double>(row_count_);
  }

 private:
  static uint64_t CountRows(const std::shared_ptr<const Database>& database,
                            const std::string& table) {
    Statement count(database, "SELECT count(*) FROM " + QuotedName(table));
    count.Step();
    return static_cast<uint64_t>(sqlite3_column_int64(count.handle(), 0));
  }

  void ReadField(std::size_t column) {
    const int index = static_cast<int>(column);
    Field& field = fields_[column];
    switch (sqlite3_column_type(statement_.handle(), index)) {
      case SQLITE_NULL:
        field = {{}, true};
        return;
      case SQLITE_FLOAT: {
        // The shortest text that means the same double; the database's own has fewer digits.
        auto& buffer = numbers_[column];
        const double value = sqlite3_column_double(statement_.handle(), index);
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
        field = {{buffer.data(), static_cast<std::size_t>(end - buffer.data())}, false};
        return;
      }
      case SQLITE_BLOB:
        throw BadInput(PlaceOf(row_), "a field holds bytes, neither a text nor a number");
      default:
        field = {statement_.Text(index), false};
        if (!IsUtf8(field.text)) throw BadInput(PlaceOf(row_), "a field is not valid UTF-8");
    }
  }

  std::string where_;
  uint64_t row_count_;
  Statement statement_;
  uint64_t row_ = 0;
  bool is_done_ = false;
  std::vector<Field> fields_;
  std::vector<std::array<char, 32>> numbers_;
  std::shared_ptr<const Database> database_;
};

/// Rows that own their texts, and what was wrong with the row after them.
class SqlitePart : public TableReader {
 public:
  explicit SqlitePart(std::shared_ptr<SqliteReader> reader) : reader_(std::move(reader)) {
    first_line_ = reader_->Line() + 1;
    try {
      while (rows_ < kRowsOfPart && reader_->Next()) Add();
    } catch (...) {
      failure_ = std::current_exception();
    }
    reader_->CheckUnchanged();  // else its rows, and what is wrong with one, are of no state
    const char* text = texts_.data();
    for (Field& field : fields_) {
      field.text = {text, field.text.size()};
      text += field.text.size();
    }
  }
  bool IsEmpty() const { return rows_ == 0 && failure_ == nullptr; }

  bool Next() override {
    if (taken_ < rows_) return ++taken_ > 0;
    if (failure_ != nullptr) std::rethrow_exception(failure_);
    return false;
  }
  std::span<const Field> Fields() const override {
    const std::size_t width = fields_.size() / rows_;
    return std::span(fields_).subspan((taken_ - 1) * width, width);
  }
  std::string PlaceOf(uint64_t row) const override { return reader_->PlaceOf(row); }
  uint64_t Line() const override { return first_line_ + taken_ - 1; }

 private:
  static constexpr std::size_t kRowsOfPart = 65536;

  void Add() {
    ++rows_;
    for (const Field& field : reader_->Fields()) {
      texts_.insert(texts_.end(), field.text.begin(), field.text.end());
      fields_.push_back(field);
    }
  }

  std::shared_ptr<SqliteReader> reader_;
  uint64_t first_line_ = 1;
  std::size_t rows_ = 0;
  std::size_t taken_ = 0;
  std::vector<char> texts_;  // one after the other
  std::vector<Field> fields_;
  std::exception_ptr failure_;
};

class SqliteParts : public TableParts {
 public:
  explicit SqliteParts(std::shared_ptr<SqliteReader> reader) : reader_(std::move(reader)) {}

  std::unique_ptr<TableReader> Next() override {
    auto part = std::make_unique<SqlitePart>(reader_);
    if (part->IsEmpty()) return nullptr;
    return part;
  }
  double Done() const override { return reader_->Done(); }

 private:
  std::shared_ptr<SqliteReader> reader_;
};

class SqliteSource : public TableSource {
 public:
  SqliteSource(const Files& files, const std::string& path)
      : database_(std::make_shared<Database>(files, path)) {}

  std::unique_ptr<TableParts> OpenParts(const TableName& name,
                                        const std::vector<std::string>& columns) const override {
    const std::string& table = name.name;
    Statement statement(database_, "SELECT name FROM pragma_table_xinfo(?1)");
    statement.Bind(table);
    const auto there = FirstColumn(statement);
    database_->CheckUnchanged();
    if (there.empty()) {
      Statement tables(database_,
                       "SELECT name FROM sqlite_schema WHERE type IN ('table', 'view') "
                       "AND name NOT LIKE 'sqlite!_%' ESCAPE '!' ORDER BY name");
      throw BadInput(database_->path(),
                     "there is no table " + Quoted(table) +
                         ", which the schema names. Tables there: " + Listed(FirstColumn(tables)));
    }
    PlacesOf(columns, there, database_->path() + ", table " + table);
    return std::make_unique<SqliteParts>(std::make_shared<SqliteReader>(database_, table, columns));
  }

  void CheckUnchanged() const override { database_->CheckUnchanged(); }

 private:
  std::shared_ptr<const Database> database_;
};

}  // namespace

std::unique_ptr<TableSource> OpenSqliteDatabase(const Files& files, const std::string& path) {
  return std::make_unique<SqliteSource>(files, path);
}

}  // namespace vok::olap
