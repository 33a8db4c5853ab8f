// A spreadsheet program that writes down what was asked of it, and fails where it is told to.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "platform/spreadsheet.h"

namespace vok::test {

struct SpreadsheetRecord {
  std::vector<std::string> lines;  ///< the calls in order, the letting go included
  std::vector<CellBlock> blocks;   ///< those of the "formula" lines
  std::string failing;             ///< the line that fails
  std::string version = "16.0";
  std::vector<std::string> sheets{"Data"};
  std::size_t region_rows = 1;
  std::size_t rows_at_once = 1000;
  WorkbookLook look;
  std::vector<std::string> outputs;  ///< where runs were to write
  std::function<void()> on_commit = [] {};

  void Add(const std::string& line) {
    lines.push_back(line);
    if (line == failing) throw Failure(failure_number::kAutomation, "refused", "sheets");
  }
};

class RecordingApplication : public SpreadsheetApplication {
 public:
  explicit RecordingApplication(SpreadsheetRecord& record) : record_(record) {
    record_.Add("create");
  }
  ~RecordingApplication() override { record_.lines.emplace_back("release"); }
  void SetDisplayAlerts(bool on) override { record_.Add(on ? "alerts on" : "alerts off"); }
  void SetScreenUpdating(bool on) override { record_.Add(on ? "updating on" : "updating off"); }
  std::string Version() const override {
    record_.Add("version");
    return record_.version;
  }
  void OpenWorkbook(const std::string& path) override { record_.Add("open " + path); }
  void AddWorkbook() override { record_.Add("add"); }
  std::size_t WorksheetCount() const override { return record_.sheets.size(); }
  std::string WorksheetName(std::size_t index) const override {
    return record_.sheets.at(index - 1);
  }
  void SelectWorksheet(std::size_t index) override {
    record_.Add("select " + std::to_string(index));
  }
  void SetActiveSheetName(const std::string& name) override { record_.Add("name " + name); }
  void SetColumnsNumberFormat(const std::string& columns, const std::string& format) override {
    record_.Add("format " + columns + " " + format);
  }
  std::size_t CurrentRegionRows(const std::string& cell) const override {
    record_.Add("region " + cell);
    return record_.region_rows;
  }
  std::size_t RowsAtOnce() const override { return record_.rows_at_once; }
  void SetFormula(std::size_t row, std::size_t column, CellBlock block) override {
    record_.blocks.push_back(std::move(block));
    record_.Add("formula " + std::to_string(row) + "," + std::to_string(column));
  }
  void SaveAs(const std::string& path, int32_t format) override {
    record_.Add("save " + path + " " + std::to_string(format));
  }
  void Quit() override { record_.Add("quit"); }

 private:
  SpreadsheetRecord& record_;
};

class RecordingWorkbook : public OutputWorkbook {
 public:
  explicit RecordingWorkbook(SpreadsheetRecord& record) : record_(record) {}
  void SetLook(const WorkbookLook& look) override { record_.look = look; }
  std::unique_ptr<SpreadsheetApplication> NewApplication() override {
    return std::make_unique<RecordingApplication>(record_);
  }
  void Commit() override {
    record_.Add("commit");
    record_.on_commit();
  }

 private:
  SpreadsheetRecord& record_;
};

class RecordingSpreadsheet : public Spreadsheet {
 public:
  std::unique_ptr<OutputWorkbook> NewOutput(const std::string& path, bool keep_old) override {
    record.outputs.push_back(path + (keep_old ? ", old kept" : ""));
    return std::make_unique<RecordingWorkbook>(record);
  }
  SpreadsheetRecord record;
};

}  // namespace vok::test
