// Tables as CSV files, a header row first in each.
#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <utility>

#include "providers/cube/olap/build/csv_scanner.h"
#include "providers/cube/olap/build/row_blocks.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {
namespace {

/// Where a table's columns are that are asked for.
struct CsvLayout {
  std::string path;
  std::size_t width = 0;  ///< fields of a row
  std::vector<std::size_t> places;
};

class CsvPart : public TableReader {
 public:
  CsvPart(RowBlock block, std::shared_ptr<const CsvLayout> layout)
      : layout_(std::move(layout)),
        block_(std::move(block)),
        scanner_(block_, layout_->path),
        picked_(layout_->places.size()) {}

  bool Next() override {
    if (!scanner_.NextRow(row_)) return false;
    if (row_.size() != layout_->width) {
      throw scanner_.Bad("has " + std::to_string(row_.size()) + " fields, the header has " +
                         std::to_string(layout_->width));
    }
    for (std::size_t index = 0; index < picked_.size(); ++index) {
      picked_[index] = row_[layout_->places[index]];
    }
    return true;
  }

  std::span<const Field> Fields() const override { return picked_; }
  std::string PlaceOf(uint64_t line) const override { return scanner_.PlaceOf(line); }
  uint64_t Line() const override { return scanner_.line(); }

 private:
  std::shared_ptr<const CsvLayout> layout_;
  RowBlock block_;
  CsvScanner scanner_;
  std::vector<Field> row_;
  std::vector<Field> picked_;
};

class CsvParts : public TableParts {
 public:
  CsvParts(std::unique_ptr<ByteSource> source, const std::string& path,
           const std::vector<std::string>& columns)
      : blocks_(std::move(source)), layout_(std::make_shared<CsvLayout>()) {
    RowBlock block = blocks_.Next().value_or(RowBlock());
    CsvScanner scanner(block, path);
    std::vector<Field> row;
    if (!scanner.NextRow(row)) throw BadInput(path, "is empty; a header row is expected");
    std::vector<std::string> header;
    for (const Field& field : row) header.emplace_back(field.text);
    *layout_ = {path, header.size(), PlacesOf(columns, header, path)};
    block.first_line = scanner.next_line();
    block.text.erase(0, scanner.position());
    first_ = std::move(block);
  }

  std::unique_ptr<TableReader> Next() override {
    auto block = first_ ? std::exchange(first_, {}) : blocks_.Next();
    if (!block) return nullptr;
    return std::make_unique<CsvPart>(std::move(*block), layout_);
  }

  double Done() const override { return blocks_.Done(); }

 private:
  RowBlocks blocks_;
  std::shared_ptr<CsvLayout> layout_;
  std::optional<RowBlock> first_;  // after the header, until it is given
};

class CsvFolder : public TableSource {
 public:
  CsvFolder(const Files& files, std::string path) : files_(files), path_(std::move(path)) {}

  std::unique_ptr<TableParts> OpenParts(const std::string& table,
                                        const std::vector<std::string>& columns) const override {
    // A table's name is a file's name, never a way out of the folder.
    const bool is_name = table.find_first_of("/\\") == std::string::npos;
    const std::string path = path_ + "/" + table + ".csv";
    if (!is_name || !files_.Exists(path)) {
      throw BadInput(path_,
                     "there is no file " + Quoted(table + ".csv") +
                         ", whose table the schema names. Tables there: " + Listed(Tables()));
    }
    auto& file = opened_[path];
    if (file == nullptr) file = files_.Open(path);
    return std::make_unique<CsvParts>(BytesOfFile(file, path), path, columns);
  }

  void CheckUnchanged() const override {
    for (const auto& [path, file] : opened_) {
      if (file->HasChanged()) throw FileChanged(path);
    }
  }

 private:
  std::vector<std::string> Tables() const {
    std::vector<std::string> names;
    std::error_code ignored;
    std::filesystem::directory_iterator entries(files_.NativePath(path_), ignored);
    for (const auto& entry : entries) {
      if (entry.path().extension() == ".csv") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  const Files& files_;
  std::string path_;
  /// Each is opened once, so that all who read it see the same, and kept for the check at the end.
  mutable std::map<std::string, std::shared_ptr<const FileReader>> opened_;
};

}  // namespace

std::unique_ptr<TableSource> OpenCsvFolder(const Files& files, const std::string& path) {
  return std::make_unique<CsvFolder>(files, path);
}

}  // namespace vok::olap
