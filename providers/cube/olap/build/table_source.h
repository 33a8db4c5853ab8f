// The tables that a cube is built from: a folder of CSV files, a SQLite database or a database
// server; and failures about them.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/row_text.h"
#include "platform/table_server.h"
#include "providers/cube/olap/build/csv_form.h"

namespace vok::olap {

using vok::Field;

/// Reads some columns of a table, or of a part of one, row by row. Failures name the file, the line
/// (or row) and what is wrong with it.
class TableReader {
 public:
  virtual ~TableReader() = default;
  /// False after the last row.
  virtual bool Next() = 0;
  /// The current row, in the order of the columns asked for. Valid until the next call of `Next`.
  virtual std::span<const Field> Fields() const = 0;
  /// "/data/orders.csv, line 12".
  virtual std::string PlaceOf(uint64_t line) const = 0;
  /// The current line or row.
  virtual uint64_t Line() const = 0;
  std::string Place() const { return PlaceOf(Line()); }
  /// Whether numbers are written with a decimal comma.
  virtual bool HasDecimalComma() const { return false; }
};

/// What is wrong with one row alone: those after it can still be read.
class BadRow : public Failure {
 public:
  explicit BadRow(const Failure& failure) : Failure(failure) {}
};

/// How CSV files are written, and rows that do not come from the folder.
struct CsvOptions {
  CsvForm form = {};
  std::string facts_table = {};  ///< whose rows are those of `facts` where that is given
  std::string facts_name = {};   ///< of `facts`, for failures
  std::shared_ptr<const FileReader> facts = {};
  /// Table and column: what stands in them in the form of dates is read as a date, nothing else.
  std::set<std::pair<std::string, std::string>> date_columns = {};
};

/// A table in parts of whole rows, whose number and borders its content alone decides.
class TableParts {
 public:
  virtual ~TableParts() = default;
  /// The rows after those of the part before, for any thread to read, also after the next call;
  /// null after the last part. What is wrong with a row is a failure of the part, not of this call.
  virtual std::unique_ptr<TableReader> Next() = 0;
  /// How far the parts that were given reach, 0 to 1.
  virtual double Done() const = 0;
};

class TableSource {
 public:
  virtual ~TableSource() = default;
  /// Failures: no such table, no such column; both list what there is.
  virtual std::unique_ptr<TableParts> OpenParts(const TableName& table,
                                                const std::vector<std::string>& columns) const = 0;
  /// For what only a database server can do. Failure: this is none.
  virtual std::unique_ptr<TableParts> Ask(const TableQuestion& question) const;
  /// The address to come here again; "" where files are read.
  virtual std::string AddressToKeep() const { return {}; }
  /// The same, all rows one after the other.
  std::unique_ptr<TableReader> Open(const TableName& table,
                                    const std::vector<std::string>& columns) const;
  /// To be called when all is read. Failure `FileChanged` for a table that is not any more what it
  /// was when it was first opened.
  virtual void CheckUnchanged() const = 0;
  /// What the user should know of the tables that were opened.
  virtual std::vector<std::string> Remarks() const { return {}; }
};

/// `path` is a folder or a SQLite database. Failure 53 when it is neither there, -2147467259 when
/// it is something else. `files` outlives the result. In a folder the rows of the table T are those
/// of T.csv, else T.csv.gz, else of all such files in the folder T, by their names.
std::unique_ptr<TableSource> OpenTableSource(const Files& files, const std::string& path,
                                             const CsvOptions& csv = {});

/// Both are chosen among by `OpenTableSource`.
std::unique_ptr<TableSource> OpenCsvFolder(const Files& files, const std::string& path,
                                           const CsvOptions& csv = {});
std::unique_ptr<TableSource> OpenSqliteDatabase(const Files& files, const std::string& path);

/// Where each of `wanted` stands in `there`. Failure: not there, naming the column and the table.
std::vector<std::size_t> PlacesOf(const std::vector<std::string>& wanted,
                                  const std::vector<std::string>& there, const std::string& table);

/// -2147467259: "WHERE: WHAT".
Failure BadInput(const std::string& where, const std::string& what);

/// "a, b, c", cut after the first twenty.
std::string Listed(const std::vector<std::string>& names);

/// In quotes, cut short when it is long.
std::string Quoted(std::string_view text);

}  // namespace vok::olap
