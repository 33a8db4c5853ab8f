#include "providers/facts/postgresql/postgresql_server.h"

#include <cstdlib>
#include <utility>

#include "providers/facts/postgresql/connection.h"
#include "providers/server/table_statement.h"

namespace vok::postgresql {
namespace {

/// `text` between two `quote`, those in it doubled.
std::string Between(char quote, const std::string& text) {
  std::string quoted(1, quote);
  for (const char letter : text)
    quoted += letter == quote ? std::string(2, quote) : std::string(1, letter);
  return quoted + quote;
}

std::string Name(const std::string& text) { return Between('"', text); }

/// A text for the server, with each backslash meant as it stands.
std::string Literal(const std::string& text) {
  std::string escaped;
  for (const char letter : text) escaped += letter == '\\' ? "\\\\" : std::string(1, letter);
  return "E" + Between('\'', escaped);
}

/// Quoted keys take the type of the column that they are compared with.
const server::SqlDialect kDialect{
    Name, [](const std::string&, const std::string& key) { return Literal(key); },
    [](const std::string& column) { return "sum(" + Name(column) + ")"; }, "text"};

class CopiedRows : public ServerRows {
 public:
  /// `check` as `TableServer::Read` takes it.
  CopiedRows(std::shared_ptr<Connection> connection, const std::string& select, double guess,
             const std::function<void()>* check)
      : connection_(std::move(connection)), guess_(guess) {
    connection_->Watch(check);
    connection_->BeginCopy("COPY (" + select + ") TO STDOUT");
  }
  ~CopiedRows() override {
    connection_->Watch(nullptr);
    if (!is_done_) connection_->Abandon();
  }

  bool Next(std::string& text) override {
    constexpr std::size_t kEnough = std::size_t{2} << 20;
    text.clear();
    while (!is_done_ && text.size() < kEnough) is_done_ = !connection_->AppendRow(text);
    return !text.empty();
  }
  double Guess() const override { return guess_; }

 private:
  std::shared_ptr<Connection> connection_;
  double guess_;
  bool is_done_ = false;
};

class Server : public TableServer {
 public:
  explicit Server(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {
    connection_->Ask(
        "BEGIN ISOLATION LEVEL REPEATABLE READ, READ ONLY; "
        "SET LOCAL extra_float_digits = 3; SET LOCAL datestyle = 'ISO'");
  }

  const std::string& address() const override { return connection_->address(); }
  std::string AddressToKeep() const override { return connection_->AddressToKeep(); }

  std::vector<ServerColumn> Columns(const TableName& table) override {
    const std::string question =
        "SELECT attname, coalesce(nullif(typbasetype, 0), t.oid) IN (700, 701), "
        "typcategory = 'S', typcategory = 'N' "
        "FROM pg_catalog.pg_attribute JOIN pg_catalog.pg_type t ON t.oid = atttypid "
        "WHERE attrelid = " +
        Literal(server::QuotedTable(table, kDialect)) +
        "::regclass AND attnum > 0 AND NOT attisdropped ORDER BY attnum";
    std::vector<ServerColumn> columns;
    try {
      for (auto& row : connection_->Ask(question)) {
        columns.push_back({row[0], row[1] == "t", row[2] == "t", row[3] == "t"});
      }
    } catch (const Refusal& refused) {
      if (refused.state() != "42P01" && refused.state() != "3F000") throw;
      throw Failure(refused.number(), refused.description() + Tables());
    }
    return columns;
  }

  std::unique_ptr<ServerRows> Read(const TableQuestion& question,
                                   const std::function<void()>* check) override {
    const std::string select = server::TableStatement(question, kDialect);
    const double guess = question.most_rows > 0 ? 0 : Guess(select);
    return std::make_unique<CopiedRows>(connection_, select, guess, check);
  }

  /// What speaks this protocol knows md5: 15 of its digits are a number that sums hold exactly.
  std::string Fingerprint(const TableName& table,
                          const std::vector<std::string>& columns) override {
    std::string row;
    for (const std::string& column : columns) row += (row.empty() ? "" : ", ") + Name(column);
    const auto rows = connection_->Ask(
        "SELECT count(*) || '-' || coalesce(sum(('x' || substr(md5(ROW(" + row +
        ")::text), 1, 15))::bit(60)::bigint), 0) FROM " + server::QuotedTable(table, kDialect));
    return rows.empty() ? "" : rows[0][0];
  }

 private:
  /// As the planner has it, from the statistics of all that the table or view is made of.
  double Guess(const std::string& select) {
    const auto plan = connection_->Ask("EXPLAIN " + select);
    const std::string first = plan.empty() ? "" : plan[0][0];
    const std::size_t at = first.find(" rows=");
    return at == std::string::npos ? 0 : std::strtod(first.c_str() + at + 6, nullptr);
  }

  /// Those that the schema could mean. The transaction has failed: it is over.
  std::string Tables() {
    constexpr std::size_t kMost = 20;
    const auto rows = connection_->Ask(
        "ROLLBACK; SELECT table_schema || '.' || table_name FROM information_schema.tables "
        "WHERE table_schema NOT IN ('pg_catalog', 'information_schema') ORDER BY 1 LIMIT 21");
    std::string list = ". Tables there: ";
    if (rows.empty()) return list + "none that this user may read";
    for (std::size_t row = 0; row < rows.size() && row < kMost; ++row) {
      list += (row == 0 ? "" : ", ") + rows[row][0];
    }
    return list + (rows.size() > kMost ? ", ..." : "");
  }

  std::shared_ptr<Connection> connection_;
};

}  // namespace

std::unique_ptr<TableServer> OpenServer(const std::string& address, const ServerSettings& settings,
                                        const QueryStop& stop) {
  return std::make_unique<Server>(
      std::make_shared<Connection>(ReadAddress(address, settings), settings, stop));
}

}  // namespace vok::postgresql
