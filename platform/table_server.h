// The port for database servers that cubes are built from.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/query_stop.h"
#include "platform/server_settings.h"
#include "platform/table_question.h"

namespace vok {

struct ServerColumn {
  std::string name;
  bool is_binary_fraction = false;  ///< such as double precision: most decimals are not exact in it
  bool is_text = false;             ///< compared letter by letter
  bool is_number = false;
};

/// Null when none has the name.
inline const ServerColumn* FindColumn(const std::vector<ServerColumn>& columns,
                                      const std::string& name) {
  for (const ServerColumn& column : columns) {
    if (column.name == name) return &column;
  }
  return nullptr;
}

/// Rows that are read once, as they arrive.
class ServerRows {
 public:
  virtual ~ServerRows() = default;
  /// Replaces `text` by the next rows, some MB of them, whole ones, as `RowText` reads them. False
  /// after the last row. One thread at a time.
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
  /// `check` is called now and then while the server works; what it throws ends that. It outlives
  /// the result; nullptr: nothing is called.
  virtual std::unique_ptr<ServerRows> Read(const TableQuestion& question,
                                           const std::function<void()>* check = nullptr) = 0;
  /// A text that changes with the content of these columns, and not with the order of the rows.
  virtual std::string Fingerprint(const TableName& table,
                                  const std::vector<std::string>& columns) = 0;
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
