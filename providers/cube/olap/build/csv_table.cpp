// Tables as CSV files, a header row first in each.
#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <utility>

#include "platform/whole_path.h"
#include "providers/cube/olap/build/csv_scanner.h"
#include "providers/cube/olap/build/decoded_bytes.h"
#include "providers/cube/olap/build/row_blocks.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {
namespace {

/// Where a table's columns are that are asked for.
struct CsvLayout {
  std::string path;
  CsvForm form;
  std::vector<std::size_t> dates;  ///< which of the columns that are asked for hold dates
  std::size_t width = 0;           ///< fields of a row
  std::vector<std::size_t> places;
};

class CsvPart : public TableReader {
 public:
  CsvPart(RowBlock block, std::shared_ptr<const CsvLayout> layout)
      : layout_(std::move(layout)),
        block_(std::move(block)),
        scanner_(block_, layout_->path, layout_->form.separator),
        picked_(layout_->places.size()),
        dates_(layout_->dates.size()) {}

  bool Next() override {
    do {
      if (!scanner_.NextRow(row_)) return false;
    } while (IsBlankLine());
    if (row_.size() != layout_->width) {
      throw BadRow(scanner_.Bad("has " + std::to_string(row_.size()) + " fields, the header has " +
                                std::to_string(layout_->width)));
    }
    for (std::size_t index = 0; index < picked_.size(); ++index) {
      picked_[index] = row_[layout_->places[index]];
    }
    ReadDates();
    return true;
  }

  std::span<const Field> Fields() const override { return picked_; }
  std::string PlaceOf(uint64_t line) const override { return scanner_.PlaceOf(line); }
  uint64_t Line() const override { return scanner_.line(); }
  bool HasDecimalComma() const override { return layout_->form.decimal == ','; }

 private:
  /// Many programs leave one at the end. Where a row has one field it is a row.
  bool IsBlankLine() const { return row_.size() == 1 && row_[0].is_null && layout_->width > 1; }

  void ReadDates() {
    for (std::size_t index = 0; index < dates_.size(); ++index) {
      Field& field = picked_[layout_->dates[index]];
      auto date = IsoDateIn(layout_->form.dates, field.text);
      if (!date) continue;
      dates_[index] = std::move(*date);
      field.text = dates_[index];
    }
  }

  std::shared_ptr<const CsvLayout> layout_;
  RowBlock block_;
  CsvScanner scanner_;
  std::vector<Field> row_;
  std::vector<Field> picked_;
  std::vector<std::string> dates_;  // of the current row, where its fields are dates
};

struct CsvFile {
  std::shared_ptr<const FileReader> file;
  std::string path;
};

/// That are asked for, and which of them hold dates of the form.
struct CsvColumns {
  std::vector<std::string> names;
  std::vector<std::size_t> dates;
};

class CsvFileParts {
 public:
  CsvFileParts(const CsvFile& file, const CsvForm& form, const CsvColumns& columns)
      : blocks_(Decoded(BytesOfFile(file.file, file.path), file.path)),
        layout_(std::make_shared<CsvLayout>()) {
    RowBlock block = blocks_.Next().value_or(RowBlock());
    CsvScanner scanner(block, file.path, form.separator);
    std::vector<Field> row;
    if (!scanner.NextRow(row)) throw BadInput(file.path, "is empty; a header row is expected");
    std::vector<std::string> header;
    header.reserve(row.size());
    for (const Field& field : row) header.emplace_back(field.text);
    *layout_ = {file.path, form, columns.dates, header.size(),
                PlacesOf(columns.names, header, file.path)};
    block.first_line = scanner.next_line();
    block.text.erase(0, scanner.position());
    first_ = std::move(block);
  }

  std::unique_ptr<TableReader> Next() {
    auto block = first_ ? std::exchange(first_, {}) : blocks_.Next();
    if (!block) return nullptr;
    return std::make_unique<CsvPart>(std::move(*block), layout_);
  }

  double Done() const { return blocks_.Done(); }

 private:
  RowBlocks blocks_;
  std::shared_ptr<CsvLayout> layout_;
  std::optional<RowBlock> first_;  // after the header, until it is given
};

/// One file after the other; each has a header of its own.
class CsvParts : public TableParts {
 public:
  CsvParts(std::vector<CsvFile> files, CsvForm form, CsvColumns columns)
      : files_(std::move(files)), form_(std::move(form)), columns_(std::move(columns)) {
    OpenNext();
  }

  std::unique_ptr<TableReader> Next() override {
    for (;;) {
      if (auto part = parts_->Next()) return part;
      if (opened_ == files_.size()) return nullptr;
      OpenNext();
    }
  }

  double Done() const override {
    return (static_cast<double>(opened_ - 1) + parts_->Done()) / static_cast<double>(files_.size());
  }

 private:
  void OpenNext() { parts_ = std::make_unique<CsvFileParts>(files_[opened_++], form_, columns_); }

  std::vector<CsvFile> files_;
  CsvForm form_;
  CsvColumns columns_;
  std::size_t opened_ = 0;
  std::unique_ptr<CsvFileParts> parts_;  // of the last one opened
};

bool IsCsvName(std::string_view name) {
  return name.ends_with(".csv") || name.ends_with(".csv.gz");
}

class CsvFolder : public TableSource {
 public:
  CsvFolder(const Files& files, std::string path, CsvOptions csv)
      : files_(files), path_(std::move(path)), csv_(std::move(csv)) {}

  std::unique_ptr<TableParts> OpenParts(const TableName& table,
                                        const std::vector<std::string>& columns) const override {
    CsvColumns asked{columns, {}};
    for (std::size_t index = 0; index < columns.size() && !csv_.form.dates.empty(); ++index) {
      if (csv_.date_columns.contains({table.name, columns[index]})) asked.dates.push_back(index);
    }
    return std::make_unique<CsvParts>(FilesOf(table.name), csv_.form, std::move(asked));
  }

  void CheckUnchanged() const override {
    for (const auto& [path, file] : opened_) {
      if (file->HasChanged()) throw FileChanged(path);
    }
  }

 private:
  std::vector<CsvFile> FilesOf(const std::string& table) const {
    if (csv_.facts != nullptr && table == csv_.facts_table) return {{csv_.facts, csv_.facts_name}};
    std::vector<CsvFile> files;
    for (const std::string& path : PathsOf(table)) {
      auto& file = opened_[path];
      if (file == nullptr) file = files_.Open(path);
      files.push_back({file, path});
    }
    if (!files.empty()) return files;
    throw BadInput(path_, "there is no file " + Quoted(table + ".csv") +
                              ", whose table the schema names. Tables there: " + Listed(Tables()));
  }

  std::vector<std::string> Tables() const {
    std::vector<std::string> names = NamesIn(path_);
    for (std::string& name : names) name.resize(name.rfind(".csv"));
    return names;
  }

  /// A table's name is a file's name, never a way out of the folder.
  std::vector<std::string> PathsOf(const std::string& table) const {
    if (table.find_first_of("/\\") != std::string::npos) return {};
    const std::string base = path_ + "/" + table;
    for (const char* ending : {".csv", ".csv.gz"}) {
      if (files_.Exists(base + ending)) return {base + ending};
    }
    std::vector<std::string> paths;
    for (const std::string& name : NamesIn(base)) paths.push_back(base + "/" + name);
    return paths;
  }

  /// Those of CSV files in a folder, in their order; none where there is no such folder.
  std::vector<std::string> NamesIn(const std::string& folder) const {
    std::vector<std::string> names;
    std::error_code ignored;
    std::filesystem::directory_iterator entries(PathOfUtf8(files_.NativePath(folder)), ignored);
    for (const auto& entry : entries) {
      const std::u8string name = entry.path().filename().u8string();
      names.emplace_back(name.begin(), name.end());
    }
    std::erase_if(names, [](const std::string& name) { return !IsCsvName(name); });
    std::sort(names.begin(), names.end());
    return names;
  }

  const Files& files_;
  std::string path_;
  CsvOptions csv_;
  /// Each is opened once, so that all who read it see the same, and kept for the check at the end.
  mutable std::map<std::string, std::shared_ptr<const FileReader>> opened_;
};

}  // namespace

std::unique_ptr<TableSource> OpenCsvFolder(const Files& files, const std::string& path,
                                           const CsvOptions& csv) {
  return std::make_unique<CsvFolder>(files, path, csv);
}

}  // namespace vok::olap
