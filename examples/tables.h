// The files of the example: a star of CSV tables, its schema and its settings.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "examples/plan.h"
#include "examples/trade.h"

namespace vok::examples {

/// A file that is written whole or fails: `Close` throws std::runtime_error naming it when any byte
/// was refused.
class OutputFile {
 public:
  explicit OutputFile(const std::filesystem::path& path);
  OutputFile& operator<<(std::string_view text);
  OutputFile& operator<<(int64_t number);
  /// The text as one CSV field, quoted when it must be.
  OutputFile& Field(std::string_view text);
  void Close();

 private:
  std::filesystem::path path_;
  std::ofstream stream_;
};

/// dates.csv, lines.csv, files.csv, opening.csv, money.csv.
void WriteDimensions(const Plan& plan);

/// entries.csv; returns how many entries it has.
int64_t WriteEntries(const Plan& plan);

/// schema.xml and settings.json.
void WriteDocuments(const Plan& plan);

std::string LedgerName(int ledger);
std::string MoneySetName(int money);

}  // namespace vok::examples
