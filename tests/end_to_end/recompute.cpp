// Prints the sheet that a run must leave, as CSV: text cells quoted, numbers in their shortest
// form.
//
//   recompute DATA_DIR DATA_SOURCE PERIOD_SET      the sheet; nothing when there is no workbook
//   recompute DATA_DIR                             all pairs of settings, TAB between the two names
//
// Exit status 3 when a period meets no date of the cube, so that the run must fail.
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <span>

#include "tests/end_to_end/expected_sheet.h"

namespace vok::end_to_end {
namespace {

void PrintPairs(const std::filesystem::path& settings) {
  std::ifstream stream(settings);
  nlohmann::json document = nlohmann::json::parse(stream);
  for (const auto& source : document.at("dataSources")) {
    for (const auto& periods : document.at("periods")) {
      std::cout << source.at("SetName").get<std::string>() << '\t'
                << periods.at("SetName").get<std::string>() << '\n';
    }
  }
}

int Recompute(std::span<char*> arguments) {
  if (arguments.size() != 2 && arguments.size() != 4) {
    std::cerr << "usage: recompute DATA_DIR [DATA_SOURCE PERIOD_SET]\n";
    return 2;
  }
  std::filesystem::path folder = arguments[1];
  if (arguments.size() == 2) {
    PrintPairs(folder / "settings.json");
    return 0;
  }
  Report report = ReadReport(folder / "settings.json", arguments[2], arguments[3]);
  for (const Row& row : ExpectedSheet(ReadDataSet(folder, report.cube), report))
    std::cout << FormatRow(row);
  return 0;
}

}  // namespace
}  // namespace vok::end_to_end

int main(int count, char** arguments) {
  try {
    return vok::end_to_end::Recompute({arguments, static_cast<size_t>(count)});
  } catch (const vok::end_to_end::NoDate& error) {
    std::cerr << "recompute: " << error.what() << '\n';
    return 3;
  } catch (const std::exception& error) {
    std::cerr << "recompute: " << error.what() << '\n';
    return 1;
  }
}
