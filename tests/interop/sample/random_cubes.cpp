// Writes random cubes for both sides: tables as CSV files, one schema, and the statements that load
// the tables into the server's database.
//
//   interop_random_cubes TABLES SCHEMA STATEMENTS COUNT [SEED]
#include <cstdint>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "tests/support/plain_olap/random_cube.h"

namespace {

std::string TypeOf(const std::string& column) {
  if (column.ends_with("_text")) return "VARCHAR";
  return column == "amount" ? "DOUBLE PRECISION" : "INT";
}

/// H2's CSVREAD reads every column as text.
std::string Loaded(const std::string& table, const std::string& csv) {
  std::istringstream names(csv.substr(0, csv.find('\n')));
  std::string columns;
  for (std::string name; std::getline(names, name, ',');) {
    columns += (columns.empty() ? "" : ", ") + ("CAST(\"" + name) + "\" AS " + TypeOf(name) +
               ") AS \"" + name + "\"";
  }
  return "CREATE TABLE \"" + table + "\" AS SELECT " + columns + " FROM CSVREAD('" + table +
         ".csv', NULL, 'charset=UTF-8 caseSensitiveColumnNames=true');\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::cerr << "usage: interop_random_cubes TABLES SCHEMA STATEMENTS COUNT [SEED]\n";
    return 2;
  }
  const uint64_t seed = argc > 5 ? std::stoull(argv[5]) : 1;
  std::ofstream schema(argv[2]);
  std::ofstream statements(argv[3]);
  schema << "<Schema name=\"random\">\n";
  for (int i = 0; i < std::stoi(argv[4]); ++i) {
    vok::plain::RandomCube random;
    vok::plain::MakeRandomCube(seed + static_cast<uint64_t>(i), "Random" + std::to_string(i),
                               random);
    schema << random.schema;
    for (const auto& [table, csv] : random.tables) {
      std::ofstream(argv[1] + ('/' + table) + ".csv") << csv;
      statements << Loaded(table, csv);
    }
  }
  schema << "</Schema>\n";
  return schema.flush() && statements.flush() ? 0 : 1;
}
