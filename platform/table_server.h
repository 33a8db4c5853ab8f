// The port for database servers that cubes are built from.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/query_stop.h"
#include "platform/server_settings.h"

namespace vok {

struct TableName {
  std::string name;
  std::string schema = {};  ///< "": where the server looks by itself
};

struct ServerColumn {
  std::string name;
  bool is_binary_fraction = false;  ///< such as double precision: most decimals are not exact in it
  bool is_text = false;             ///< compared letter by letter
};

/// How the values of rows are put together; NULL counts for none of them.
enum class Gathering { kNone, kSum, kCount, kLeast, kLargest };

struct AskedColumn {
  std::string name;  ///< "" where rows are counted, also those of NULL alone
  Gathering gathering = Gathering::kNone;
};

/// Keys from `low` up to `high`, both among them; without `high` all from `low` on.
struct KeyRange {
  std::string low;
  std::string high = {};
};

/// What is asked of a table.
struct TableQuestion {
  TableName table;
  /// Where the values of some are put together there is a row for each combination of the others.
  std::vector<AskedColumn> columns;
  std::string key_column = {};        ///< of `ranges`
  std::vector<KeyRange> ranges = {};  ///< only rows whose key lies in one of them; none: all rows
};

inline bool IsGathered(const TableQuestion& question) {
  for (const AskedColumn& column : question.columns) {
    if (column.gathering != Gathering::kNone) return true;
  }
  return false;
}

/// Rows that are read once, as they arrive.
class ServerRows {
 public:
  virtual ~ServerRows() = default;
  /// Replaces `text` by the next rows, some MB of them, whole ones: "\n" after each, tabs between
  /// fields, "\N" for NULL, a backslash before letters that stand for such, as in C. False after
  /// the last row. One thread at a time.
  virtual bool Next(std::string& text) = 0;
  /// How many rows there are, as the server guesses; 0: it does not.
  virtual double Guess() const = 0;
};

/// A connection, used by one thread at a time. All that it reads is of one state of the database,
/// where the server can do that. Failures have the server's own words. Each call ends within some
/// seconds after its `QueryStop` was asked, with failure `kQueryCancelled`, and what the server
/// does for it ends too.
class TableServer {
 public:
  virtual ~TableServer() = default;
  /// The address without user, password and options, for messages.
  virtual const std::string& address() const = 0;
  /// The address that another program may use to come here: with options, without user and
  /// password.
  virtual std::string AddressToKeep() const { return address(); }
  /// Of a table or a view. Failure: it is not there, with those that are; it may not be read.
  virtual std::vector<ServerColumn> Columns(const TableName& table) = 0;
  /// Nothing else may be asked until all rows were read.
  virtual std::unique_ptr<ServerRows> Read(const TableQuestion& question) = 0;
};

/// Whether the text is an address, such as "postgresql://host/database", and not a path.
inline bool NamesTableServer(const std::string& text) {
  return text.find("://") != std::string::npos;
}

/// Failures: an address that is not one or bears a password, no connection, no login. `stop`
/// outlives the result.
using OpenTableServer =
    std::function<std::unique_ptr<TableServer>(const std::string& address, const QueryStop& stop)>;

}  // namespace vok
