#include "providers/cube/olap/build/server_tables.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/row_text.h"

namespace vok::olap {
namespace {

class ServerPart : public TableReader {
 public:
  ServerPart(std::string text, const std::string& place, uint64_t first_row, std::size_t width)
      : rows_(std::move(text), width, place, first_row) {}

  bool Next() override { return rows_.Next(); }
  std::span<const Field> Fields() const override { return rows_.Fields(); }
  std::string PlaceOf(uint64_t row) const override { return rows_.PlaceOf(row); }
  uint64_t Line() const override { return rows_.row(); }

 private:
  RowText rows_;
};

class ServerParts : public TableParts {
 public:
  ServerParts(std::unique_ptr<ServerRows> rows, std::string place, std::size_t width)
      : rows_(std::move(rows)), place_(std::move(place)), width_(width) {}

  std::unique_ptr<TableReader> Next() override {
    std::string text;
    if (!rows_->Next(text)) return nullptr;
    const uint64_t first = given_ + 1;
    given_ += static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n'));
    return std::make_unique<ServerPart>(std::move(text), place_, first, width_);
  }
  double Done() const override {
    const double rows = std::max(rows_->Guess(), 1.0);
    return std::min(static_cast<double>(given_) / rows, 1.0);
  }

 private:
  std::unique_ptr<ServerRows> rows_;
  std::string place_;
  std::size_t width_;
  uint64_t given_ = 0;  // rows
};

class ServerTables : public TableSource {
 public:
  ServerTables(std::shared_ptr<TableServer> server, std::vector<TableName> once)
      : server_(std::move(server)), once_(std::move(once)) {}

  std::unique_ptr<TableParts> OpenParts(const TableName& table,
                                        const std::vector<std::string>& columns) const override {
    TableQuestion question = RowsOf(table, columns);
    question.once = std::find(once_.begin(), once_.end(), table) != once_.end();
    return Ask(question);
  }

  std::unique_ptr<TableParts> Ask(const TableQuestion& question) const override {
    const std::string place = server_->address() + ", table " + ShownName(question.table);
    const auto there = server_->Columns(question.table);
    std::vector<std::string> names;
    names.reserve(there.size());
    for (const ServerColumn& column : there) names.push_back(column.name);
    std::vector<std::string> wanted;
    for (const AskedColumn& column : question.columns) {
      if (!column.name.empty()) wanted.push_back(column.name);
    }
    for (const std::size_t at : PlacesOf(wanted, names, place)) Remark(there[at], place);
    for (const KeyCondition& condition : question.where) {
      CheckOrder(condition, there[PlacesOf(condition.columns, names, place)[0]], place);
    }
    return std::make_unique<ServerParts>(server_->Read(question), place, WidthOf(question));
  }

  std::string AddressToKeep() const override { return server_->AddressToKeep(); }

  /// The server shows one state of the database.
  void CheckUnchanged() const override {}
  std::vector<std::string> Remarks() const override { return remarks_; }

 private:
  /// To the server, texts of digits are in the order of the numbers only when they are of one
  /// length.
  static void CheckOrder(const KeyCondition& condition, const ServerColumn& column,
                         const std::string& place) {
    if (!column.is_text || condition.ranges.empty()) return;
    const std::size_t length = condition.ranges.front().low.size();
    for (const KeyRange& range : condition.ranges) {
      for (const std::string* key : {&range.low, &range.high}) {
        if (key->empty() || key->size() == length) continue;
        throw BadInput(place, "the column " + Quoted(column.name) +
                                  " holds texts of several lengths, whose order is not that of "
                                  "time, so single months cannot be read. Make it a column of "
                                  "numbers or dates, or build the whole cube");
      }
    }
  }

  void Remark(const ServerColumn& column, const std::string& place) const {
    if (!column.is_binary_fraction) return;
    const std::string remark =
        place + ": the column " + Quoted(column.name) +
        " holds binary fractions (double precision), in which most amounts are not exact. They are "
        "read as the server writes them. Make it a column of type numeric";
    if (std::find(remarks_.begin(), remarks_.end(), remark) == remarks_.end()) {
      remarks_.push_back(remark);
    }
  }

  std::shared_ptr<TableServer> server_;
  std::vector<TableName> once_;
  mutable std::vector<std::string> remarks_;
};

}  // namespace

std::unique_ptr<TableSource> OpenServerTables(std::shared_ptr<TableServer> server,
                                              std::vector<TableName> once) {
  return std::make_unique<ServerTables>(std::move(server), std::move(once));
}

}  // namespace vok::olap
