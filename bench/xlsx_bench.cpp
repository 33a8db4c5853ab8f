// How long a run's workbook takes: of one pass, and of two.
#include <benchmark/benchmark.h>

#include <algorithm>
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
CellBlock Lines(std::size_t first, std::size_t rows) {
  const std::string names[] = {"Freight and handling", "\xD7\xA9\xD7\x9B\xD7\xA8",
                               "Verkaufserl\xC3\xB6se",
                               "\xD0\x97\xD0\xB0\xD1\x80\xD0\xBF\xD0\xBB\xD0\xB0\xD1\x82\xD0\xB0"};
  CellBlock block(rows, kColumns);
  uint64_t random = 42 + first;
  for (std::size_t row = 1; row <= rows; ++row) {
    block.SetText(row, 1, "0");
    for (std::size_t column = 2; column <= kTextColumns; ++column) {
      const bool own = column == 2 || column == 3;
      block.SetText(row, column,
                    names[(first + row + column) % 4] + (own ? std::to_string(first + row) : ""));
    }
    for (std::size_t column = kTextColumns + 1; column <= kColumns; ++column) {
      random = random * 6364136223846793005u + 1442695040888963407u;
      block.SetNumber(row, column, static_cast<double>(random >> 40) / 100);
    }
  }
  return block;
}

void AddLines(SpreadsheetApplication& application, std::size_t above, std::size_t rows) {
  for (std::size_t done = 0; done < rows;) {
    const std::size_t count = std::min(application.RowsAtOnce(), rows - done);
    application.SetFormula(above + done + 1, 1, Lines(done, count));
    done += count;
  }
}

void Write(OneFile& file, std::size_t rows, int passes, unsigned threads) {
  xlsx::XlsxSpreadsheet spreadsheet(file, threads);
  const auto workbook = spreadsheet.NewOutput("q.xlsX", false);
  const auto application = workbook->NewApplication();
  application->AddWorkbook();
  application->SetActiveSheetName("Data");
  application->SetColumnsNumberFormat("A:K", "@");
  AddLines(*application, 1, rows);
  for (int pass = 1; pass < passes; ++pass) {
    application->SaveAs("q.xlsX", kOpenXmlWorkbook);
    application->Quit();
    application->OpenWorkbook("q.xlsX");
    AddLines(*application, application->CurrentRegionRows("A1"), rows);
  }
  application->SaveAs("q.xlsX", kOpenXmlWorkbook);
  workbook->Commit();
}

void WriteWorkbook(benchmark::State& state) {
  OneFile file;
  for (auto _ : state) {
    Write(file, static_cast<std::size_t>(state.range(0)), static_cast<int>(state.range(1)),
          static_cast<unsigned>(state.range(2)));
  }
  state.counters["bytes"] = static_cast<double>(file.bytes.size());
}

BENCHMARK(WriteWorkbook)
    ->ArgsProduct({{10'000, 100'000}, {1, 2}, {1, 2}})
    ->ArgNames({"rows", "passes", "threads"})
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
