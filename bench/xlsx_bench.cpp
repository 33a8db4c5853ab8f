// How long a run's workbook takes: of one pass, and of two.
#include <benchmark/benchmark.h>

#include <string>

#include "platform/files.h"
#include "providers/workbook/xlsx/xlsx_spreadsheet.h"

namespace {

using namespace vok;

constexpr std::size_t kTextColumns = 11;
constexpr std::size_t kColumns = 35;

/// Holds one file, in memory.
class OneFile : public Files {
 public:
  std::string bytes;

  bool Exists(const std::string&) const override { return true; }
  bool IsDirectory(const std::string&) const override { return false; }
  void Delete(const std::string&) override {}
  void CreateDirectory(const std::string&) override {}
  void Append(const std::string&, std::string_view) override {}
  std::unique_ptr<FileReader> Open(const std::string&) const override {
    return ReaderOf(std::as_bytes(std::span(bytes)));
  }
  std::unique_ptr<FileReplacement> Replace(const std::string&) override {
    return std::make_unique<Replacement>(bytes);
  }
  Date LastModified(const std::string&) const override { return {}; }
  void ChangeDirectory(const std::string&) override {}
  std::string NativePath(const std::string& path) const override { return path; }

 private:
  struct Replacement : FileReplacement {
    explicit Replacement(std::string& file) : target(file) {}
    void Write(std::span<const std::byte> written) override {
      text.append(reinterpret_cast<const char*>(written.data()), written.size());
    }
    void Commit() override { target = std::move(text); }
    std::string& target;
    std::string text;
  };
};

/// Report lines as a ledger has them: captions in several languages, amounts with two digits.
CellBlock Lines(std::size_t rows) {
  const std::string names[] = {"Freight and handling", "\xD7\xA9\xD7\x9B\xD7\xA8",
                               "Verkaufserl\xC3\xB6se",
                               "\xD0\x97\xD0\xB0\xD1\x80\xD0\xBF\xD0\xBB\xD0\xB0\xD1\x82\xD0\xB0"};
  CellBlock block(rows, kColumns);
  uint64_t random = 42;
  for (std::size_t row = 1; row <= rows; ++row) {
    block.At(row, 1) = "0";
    for (std::size_t column = 2; column <= kTextColumns; ++column) {
      const bool own = column == 2 || column == 3;
      block.At(row, column) = names[(row + column) % 4] + (own ? std::to_string(row) : "");
    }
    for (std::size_t column = kTextColumns + 1; column <= kColumns; ++column) {
      random = random * 6364136223846793005u + 1442695040888963407u;
      block.At(row, column) = static_cast<double>(random >> 40) / 100;
    }
  }
  return block;
}

void Write(OneFile& file, const CellBlock& lines, int passes) {
  xlsx::XlsxSpreadsheet spreadsheet(file);
  const auto workbook = spreadsheet.NewOutput("q.xlsX", false);
  const auto application = workbook->NewApplication();
  application->AddWorkbook();
  application->SetActiveSheetName("Data");
  application->SetColumnsNumberFormat("A:K", "@");
  application->SetFormula(1, 1, lines);
  for (int pass = 1; pass < passes; ++pass) {
    application->SaveAs("q.xlsX", kOpenXmlWorkbook);
    application->Quit();
    application->OpenWorkbook("q.xlsX");
    application->SetFormula(application->CurrentRegionRows("A1") + 1, 1, lines);
  }
  application->SaveAs("q.xlsX", kOpenXmlWorkbook);
  workbook->Commit();
}

void WriteWorkbook(benchmark::State& state) {
  const CellBlock lines = Lines(static_cast<std::size_t>(state.range(0)));
  OneFile file;
  for (auto _ : state) Write(file, lines, static_cast<int>(state.range(1)));
  state.counters["bytes"] = static_cast<double>(file.bytes.size());
}

BENCHMARK(WriteWorkbook)->ArgsProduct({{10'000, 100'000}, {1, 2}})->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
