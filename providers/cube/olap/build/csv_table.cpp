// Tables as CSV files, a header row first in each.
#include <algorithm>
#include <filesystem>
#include <map>
#include <utility>

#include "providers/cube/olap/build/csv_scanner.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {
namespace {

class CsvReader : public TableReader {
 public:
  CsvReader(std::shared_ptr<const FileReader> file, std::string path,
            const std::vector<std::string>& columns)
      : path_(std::move(path)), file_(std::move(file)), scanner_(*file_, path_) {
    if (!scanner_.NextRow(row_)) throw BadInput(path_, "is empty; a header row is expected");
    std::vector<std::string> header;
    for (const Field& field : row_) header.emplace_back(field.text);
    width_ = header.size();
    places_ = PlacesOf(columns, header, path_);
    picked_.resize(columns.size());
    row_estimate_ = Estimate();
  }

  bool Next() override {
    if (!scanner_.NextRow(row_)) return false;
    if (row_.size() != width_) {
      throw scanner_.Bad("has " + std::to_string(row_.size()) + " fields, the header has " +
                         std::to_string(width_));
    }
    for (std::size_t index = 0; index < places_.size(); ++index) {
      picked_[index] = row_[places_[index]];
    }
    return true;
  }

  std::span<const Field> Fields() const override { return picked_; }
  std::string PlaceOf(uint64_t line) const override { return scanner_.PlaceOf(line); }
  uint64_t Line() const override { return scanner_.line(); }

  double Done() const override {
    return static_cast<double>(scanner_.position()) / static_cast<double>(scanner_.size());
  }

  uint64_t RowEstimate() const override { return row_estimate_; }

 private:
  uint64_t Estimate() const {
    constexpr std::size_t kSample = 65536;
    const auto sample = scanner_.Ahead().substr(0, kSample);
    const auto lines = 1 + std::count(sample.begin(), sample.end(), '\n');
    const uint64_t rest = scanner_.size() - scanner_.position();
    return rest * static_cast<uint64_t>(lines) / (sample.size() + 1) + 1;
  }

  std::string path_;
  std::shared_ptr<const FileReader> file_;
  CsvScanner scanner_;
  std::vector<Field> row_;
  std::size_t width_ = 0;
  std::vector<std::size_t> places_;
  std::vector<Field> picked_;
  uint64_t row_estimate_ = 0;
};

class CsvFolder : public TableSource {
 public:
  CsvFolder(const Files& files, std::string path) : files_(files), path_(std::move(path)) {}

  std::unique_ptr<TableReader> Open(const std::string& table,
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
    return std::make_unique<CsvReader>(file, path, columns);
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
