#include "providers/cube/olap/build/table_source.h"

#include <algorithm>
#include <utility>

#include "platform/text.h"

namespace vok::olap {
namespace {

class WholeTable : public TableReader {
 public:
  explicit WholeTable(std::unique_ptr<TableParts> parts)
      : parts_(std::move(parts)), part_(parts_->Next()) {}

  bool Next() override {
    while (part_ != nullptr && !part_->Next()) part_ = parts_->Next();
    return part_ != nullptr;
  }
  std::span<const Field> Fields() const override { return part_->Fields(); }
  std::string PlaceOf(uint64_t line) const override { return part_->PlaceOf(line); }
  uint64_t Line() const override { return part_->Line(); }
  bool HasDecimalComma() const override { return part_->HasDecimalComma(); }

 private:
  std::unique_ptr<TableParts> parts_;
  std::unique_ptr<TableReader> part_;
};

}  // namespace

std::unique_ptr<TableReader> TableSource::Open(const TableName& table,
                                               const std::vector<std::string>& columns) const {
  return std::make_unique<WholeTable>(OpenParts(table, columns));
}

std::unique_ptr<TableParts> TableSource::Ask(const TableQuestion& question) const {
  throw BadInput("table " + Quoted(ShownName(question.table)),
                 "stands in files; only a database server puts rows together or finds those of "
                 "some months");
}

std::unique_ptr<TableSource> OpenTableSource(const Files& files, const std::string& path,
                                             const CsvOptions& csv) {
  if (files.IsDirectory(path)) return OpenCsvFolder(files, path, csv);
  constexpr std::string_view kSqliteMagic("SQLite format 3\0", 16);
  if (ReadBeginning(files, path, kSqliteMagic.size()) != kSqliteMagic) {
    throw BadInput(path, "is neither a folder of CSV files nor a SQLite database");
  }
  if (csv.facts != nullptr) throw BadInput(path, "is a database, whose facts are in it");
  return OpenSqliteDatabase(files, path);
}

std::vector<std::size_t> PlacesOf(const std::vector<std::string>& wanted,
                                  const std::vector<std::string>& there, const std::string& table) {
  std::vector<std::size_t> places;
  for (const std::string& column : wanted) {
    const auto found = std::find(there.begin(), there.end(), column);
    if (found == there.end()) {
      const bool is_unparted =
          there.size() == 1 && there[0].find_first_of(",;|\t") != std::string::npos;
      throw BadInput(table,
                     "there is no column " + Quoted(column) +
                         ", which the schema names. Its columns: " + Listed(there) +
                         (is_unparted ? ". That is one; --separator says what parts them" : ""));
    }
    if (std::find(found + 1, there.end(), column) != there.end()) {
      throw BadInput(table, "there are two columns " + Quoted(column));
    }
    places.push_back(static_cast<std::size_t>(found - there.begin()));
  }
  return places;
}

Failure BadInput(const std::string& where, const std::string& what) {
  return Failure(failure_number::kUnspecified, where + ": " + what);
}

std::string Listed(const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 20;
  if (names.empty()) return "none";
  std::string list;
  for (std::size_t index = 0; index < names.size() && index < kMost; ++index) {
    list += (index == 0 ? "" : ", ") + names[index];
  }
  return names.size() > kMost ? list + ", ..." : list;
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kMostUnits = 60;
  const std::string_view kept = Utf16Prefix(text, kMostUnits);
  return "\"" + std::string(kept) + (kept.size() < text.size() ? "...\"" : "\"");
}

}  // namespace vok::olap
