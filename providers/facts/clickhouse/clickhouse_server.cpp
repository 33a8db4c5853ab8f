#include "providers/facts/clickhouse/clickhouse_server.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <string_view>
#include <utility>

#include "platform/failure.h"
#include "platform/shown_text.h"
#include "providers/facts/clickhouse/streamed_rows.h"
#include "providers/server/http_client.h"
#include "providers/server/login.h"
#include "providers/server/table_statement.h"

namespace vok::clickhouse {
namespace {

/// `text` between two `quote`.
std::string Between(char quote, const std::string& text) {
  std::string quoted(1, quote);
  for (const char letter : text) {
    if (letter == quote || letter == '\\') quoted += '\\';
    quoted += letter;
  }
  return quoted + quote;
}

std::string NameOf(const TableName& table) {
  return (table.schema.empty() ? "" : Between('`', table.schema) + ".") + Between('`', table.name);
}

bool IsNumberType(const std::string& type) {
  return type.find("Int") != type.npos || type.find("Decimal") != type.npos ||
         type.find("Float") != type.npos;
}

std::vector<std::string> Parts(std::string_view text, char separator) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(separator), text.size());
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

struct Address {
  std::string shown;
  std::string http;  ///< with the database
};

Address ReadAddress(const std::string& text) {
  constexpr std::string_view kScheme = "clickhouse+";
  const auto refuse = [&text](const std::string& why) {
    throw Failure(failure_number::kUnspecified, WithoutUsers(text.substr(0, text.find('?'))) + why);
  };
  if (text.find_first_of("?#&") != std::string::npos) refuse(": the address takes no options");
  const std::size_t host = text.find("://") + 3;
  const std::size_t path = std::min(text.find('/', host), text.size());
  const std::string database = path == text.size() ? "" : text.substr(path + 1);
  if (path == host || database.find('/') != std::string::npos) {
    refuse(": the address is not host, port and database");
  }
  std::string way = text.substr(kScheme.size(), path - kScheme.size());
  const std::size_t colon = way.find_last_of(":]");
  if (way[colon] == ']' || way[colon + 1] == '/') {
    way += way.starts_with("https") ? ":8443" : ":8123";
  }
  way += "/?database=" + (database.empty() ? "default" : database);
  return {text, way};
}

/// Keeps a short answer, of any status.
class WholeAnswer : public HttpBody {
 public:
  void Take(const HttpHead&, std::string_view piece) override {
    constexpr std::size_t kMost = std::size_t{4} << 20;
    text_.append(piece.substr(0, kMost - std::min(kMost, text_.size())));
  }
  std::string_view beginning() const override { return text_; }

 private:
  std::string text_;
};

class Server : public TableServer {
 public:
  Server(const std::string& address, const ServerSettings& settings, NewHttpTransport transport,
         const QueryStop& stop)
      : address_(ReadAddress(address)),
        settings_(server::WithoutLogin(settings)),
        transport_(std::move(transport)),
        stop_(stop),
        no_login_(server::WhyNoLogin(settings, address_.http)) {
    settings_.answer_megabytes = 0;  // rows are passed on as they come
    if (no_login_.empty() && !settings.user.empty()) {
      headers_ = {"X-ClickHouse-User: " + settings.user, "X-ClickHouse-Key: " + settings.password};
    }
    server::HttpClient(address_.http, settings_, transport_, &stop_);  // refuses bad addresses
  }

  const std::string& address() const override { return address_.shown; }

  std::vector<ServerColumn> Columns(const TableName& table) override {
    constexpr long kNotFound = 404;
    constexpr std::string_view kNoTable = "Code: 60";
    WholeAnswer answer;
    const HttpHead head = Post(
        stop_, "SELECT * FROM " + NameOf(table) + " LIMIT 0 FORMAT TabSeparatedWithNamesAndTypes",
        answer);
    const std::string text(answer.beginning());
    if (head.status != 200) {
      const bool is_absent = head.status == kNotFound || text.starts_with(kNoTable);
      const Failure failure = FailureOf(head, text);
      throw Failure(failure.number(),
                    failure.description() + (is_absent ? ". Tables there: " + Tables(table) : ""));
    }
    const auto lines = Parts(text, '\n');
    const auto names = Parts(lines.empty() ? "" : lines[0], '\t');
    const auto types = Parts(lines.size() < 2 ? "" : lines[1], '\t');
    std::vector<ServerColumn> columns;
    for (std::size_t index = 0; index < names.size() && index < types.size(); ++index) {
      columns.push_back({names[index], types[index].find("Float") != std::string::npos,
                         types[index].find("String") != std::string::npos,
                         IsNumberType(types[index])});
      types_[NameOf(table)][names[index]] = types[index];
    }
    return columns;
  }

  std::unique_ptr<ServerRows> Read(const TableQuestion& question,
                                   const std::function<void()>* check) override {
    constexpr std::size_t kLongest = 250'000;  // that servers read when they are not told otherwise
    const std::string select =
        server::TableStatement(question, DialectOf(question.table)) + " FORMAT TabSeparated";
    const std::string id = NewId();
    std::string options = kReadOnly + ("&query_id=" + id);
    if (select.size() > kLongest) {
      options = "&max_query_size=" + std::to_string(2 * select.size()) + options;
    }
    const double guess = question.most_rows > 0 ? 0 : Guess(question.table);
    return std::make_unique<StreamedRows>(
        [this, select, options](const QueryStop& stop, HttpBody& body) {
          return Post(stop, select, body, options);
        },
        [this](const HttpHead& head, const std::string& words) { return FailureOf(head, words); },
        [this, id] { Kill(id); }, guess, stop_, check);
  }

  std::string Fingerprint(const TableName& table,
                          const std::vector<std::string>& columns) override {
    std::string row;
    for (const std::string& column : columns) {
      row +=
          (row.empty() ? "" : ", ") + ("ifNull(toString(" + Between('`', column) + "), '\\\\N')");
    }
    WholeAnswer answer;
    const HttpHead head =
        Post(stop_, "SELECT count(), sum(cityHash64(" + row + ")) FROM " + NameOf(table), answer);
    if (head.status != 200) throw FailureOf(head, std::string(answer.beginning()));
    return std::string(answer.beginning());
  }

 private:
  static constexpr const char* kReadOnly = "&readonly=1";

  /// As `Columns` told it; "" before that.
  std::string TypeOf(const TableName& table, const std::string& column) const {
    const auto known = types_.find(NameOf(table));
    if (known == types_.end()) return {};
    const auto type = known->second.find(column);
    return type == known->second.end() ? "" : type->second;
  }

  /// The server compares numbers with numbers alone, and dates by size with dates alone.
  server::SqlDialect DialectOf(const TableName& table) const {
    const auto name = [](const std::string& text) { return Between('`', text); };
    const auto key = [this, table](const std::string& column, const std::string& text) {
      const std::string type = TypeOf(table, column);
      const std::string literal = Between('\'', text);
      if (IsNumberType(type) && server::IsPlainNumber(text)) return text;
      return type.empty() || type.find("String") != type.npos
                 ? literal
                 : "CAST(" + literal + " AS " + type + ")";
    };
    const auto sum = [this, table, name](const std::string& column) {
      const bool is_integer = TypeOf(table, column).find("Int") != std::string::npos;
      // Sums of integers would wrap silently.
      return is_integer ? "sum(toDecimal128(" + name(column) + ", 0))"
                        : "sum(" + name(column) + ")";
    };
    return {name, key, sum, "toString"};
  }

  HttpHead Post(const QueryStop& stop, const std::string& question, HttpBody& body,
                const std::string& options = kReadOnly) const {
    return server::HttpClient(address_.http + options, settings_, transport_, &stop)
        .Post(headers_, question, body);
  }

  static std::string NewId() {
    std::random_device random;
    std::string id = "vokcube";
    for (int i = 0; i < 4; ++i) id += "-" + std::to_string(random());
    return id;
  }

  /// The server would notice that nobody reads only when it sends something.
  void Kill(const std::string& id) const {
    const QueryStop never;
    WholeAnswer answer;
    try {
      Post(never, "KILL QUERY WHERE query_id = " + Between('\'', id), answer, "");
    } catch (const Failure&) {  // what ended the question is told already
    }
  }

  std::string Tables(const TableName& table) const {
    WholeAnswer answer;
    const std::string from = table.schema.empty() ? "" : " FROM " + Between('`', table.schema);
    if (Post(stop_, "SHOW TABLES" + from, answer).status != 200) return "not known";
    std::string list;
    constexpr std::size_t kMost = 20;
    const auto names = Parts(answer.beginning(), '\n');
    for (std::size_t index = 0; index < names.size() && index < kMost; ++index) {
      list += (index == 0 ? "" : ", ") + OneLine(names[index]);
    }
    if (names.empty()) return "none";
    return names.size() > kMost ? list + ", ..." : list;
  }

  /// Of the rows that this server keeps itself.
  double Guess(const TableName& table) const {
    WholeAnswer answer;
    const std::string database =
        table.schema.empty() ? "currentDatabase()" : Between('\'', table.schema);
    const auto status =
        Post(stop_,
             "SELECT sum(rows) FROM system.parts WHERE active AND database = " + database +
                 " AND table = " + Between('\'', table.name),
             answer)
            .status;
    return status == 200 ? std::strtod(std::string(answer.beginning()).c_str(), nullptr) : 0;
  }

  Failure FailureOf(const HttpHead& head, const std::string& words) const {
    std::string text = address_.shown + ": ";
    const std::size_t end = words.find_last_not_of(" \r\n");
    text += words.empty() ? "the server answered with HTTP status " + std::to_string(head.status)
                          : OneLine(words.substr(0, end + 1));
    if (!no_login_.empty()) {
      text += ". The user and password that are set were not sent to it: " + no_login_;
    } else if (head.status == 401 || head.status == 403 || words.find("assword") != words.npos) {
      text += ". Set User, Password and Server in Qel.ini, section [Database]";
    }
    return {failure_number::kUnspecified, text};
  }

  Address address_;
  ServerSettings settings_;
  NewHttpTransport transport_;
  const QueryStop& stop_;
  std::string no_login_;  // why the login is not for this server
  std::vector<std::string> headers_;
  /// Of the columns of the tables that were looked at, by the names in statements.
  std::map<std::string, std::map<std::string, std::string>> types_;
};

}  // namespace

std::unique_ptr<TableServer> OpenServer(const std::string& address, const ServerSettings& settings,
                                        const NewHttpTransport& transport, const QueryStop& stop) {
  return std::make_unique<Server>(address, settings, transport, stop);
}

}  // namespace vok::clickhouse
