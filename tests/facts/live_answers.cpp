// Asks live cubes: the written queries, whose answers are recorded; queries of the form that the
// system sends, which a file with the same facts answers, too; and random ones on random cubes,
// which plain loops answer.
//
//   live_answers RUN INTEROP              writes tables into RUN/csv and schemas into RUN/schemas
//   live_answers RUN INTEROP ADDRESS      asks the database server that holds these tables
//
// INTEROP: the folder tests/interop. The exit code is 1 when an answer differs.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "hosts/composition/system_host.h"
#include "providers/cube/olap/build/build_cube.h"
#include "tests/support/answers/answer.h"
#include "tests/support/answers/system_query.h"
#include "tests/support/reference_olap/random_cube.h"

namespace vok::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kRandomCubes = 10;
constexpr int kQueriesOfEachCube = 20;
constexpr int kSystemQueries = 200;

std::string CubeName(uint64_t seed) { return "Random" + std::to_string(seed); }

plain::RandomCube CubeOf(uint64_t seed) { return plain::MakeRandomCube(seed, CubeName(seed)); }

/// Live cubes have no measures that count different values: those of the schemas go.
std::string Suited(std::string schema) {
  for (const char* name : {"Who", "Lines"}) {
    const std::size_t begin = schema.find("<Measure name=\"" + std::string(name) + '"');
    if (begin != schema.npos) schema.erase(begin, schema.find("/>", begin) + 2 - begin);
  }
  return schema;
}

/// Of cubes with facts enough: a column without a value has no type of a number.
std::vector<uint64_t> Seeds() {
  constexpr std::size_t kEnough = 20;
  std::vector<uint64_t> seeds;
  for (uint64_t seed = 1; seeds.size() < kRandomCubes; ++seed) {
    if (CubeOf(seed).cube.facts.size() >= kEnough) seeds.push_back(seed);
  }
  return seeds;
}

void WriteTables(const std::string& run, const std::string& interop) {
  fs::copy(interop + "/sample/tables", run + "/csv");
  fs::create_directory(run + "/schemas");
  for (const auto& schema : fs::directory_iterator(interop + "/sample/schemas")) {
    std::stringstream text;
    text << std::ifstream(schema.path()).rdbuf();
    std::ofstream(fs::path(run) / "schemas" / schema.path().filename()) << Suited(text.str());
  }
  for (const uint64_t seed : Seeds()) {
    const plain::RandomCube random = CubeOf(seed);
    std::ofstream(run + "/schemas/" + CubeName(seed) + ".xml")
        << "<Schema name=\"random\">" << Suited(random.schema) << "</Schema>\n";
    for (const auto& [table, csv] : random.tables) {
      std::ofstream(run + "/csv/" + table + ".csv") << csv;
    }
  }
}

class Comparison {
 public:
  Comparison(const std::string& run, const std::string& address) {
    for (const auto& schema : fs::directory_iterator(run + "/schemas")) {
      const std::string name = schema.path().stem().string();
      live_.Open(name, Built(schema.path().string(), address, run + "/" + name + "-live.cub"));
      file_.Open(name, Built(schema.path().string(), run + "/csv", run + "/" + name + ".cub"));
    }
  }

  void AskWritten(const std::string& folder) {
    for (const Case& each : ReadCases(folder)) Ask(each.catalog, each.query);
  }

  void AskOfTheSystem() {
    plain::Dice dice(1);
    for (int count = 0; count < kSystemQueries; ++count) Ask("sample", RandomSystemQuery(dice));
  }

  void AskRandom() {
    for (const uint64_t seed : Seeds()) {
      const plain::RandomCube random = CubeOf(seed);
      for (const auto& query :
           plain::RandomQueries(random.cube, CubeName(seed), seed, false, kQueriesOfEachCube)) {
        Ask(CubeName(seed), query.mdx);
      }
    }
  }

  int failed() const { return failed_; }
  int asked() const { return asked_; }

 private:
  std::string Built(const std::string& schema, const std::string& data, const std::string& output) {
    olap::BuildRequest request{schema, data, output};
    request.live = NamesTableServer(data);
    request.open_server = [this](const std::string& address, const QueryStop& stop) {
      return host_.OpenTables(address, stop);
    };
    olap::BuildCubeFile(host_.host().files, host_.host().locale, request, {});
    return "Data Source=" + output;
  }

  void Ask(const std::string& catalog, const std::string& query) {
    const std::string live = Shown(live_.Ask(catalog, query), true);
    const std::string file = Shown(file_.Ask(catalog, query), true);
    ++asked_;
    if (live == file) return;
    ++failed_;
    std::cout << "FAILED " << query << "\nlive:\n" << live << "file:\n" << file << '\n';
  }

  SystemHost host_{{}};
  Side live_{host_.cube_files()};
  Side file_{host_.cube_files()};
  int asked_ = 0, failed_ = 0;
};

int Compare(const std::string& run, const std::string& interop, const std::string& address) {
  Comparison comparison(run, address);
  comparison.AskWritten(interop + "/cases");
  comparison.AskOfTheSystem();
  comparison.AskRandom();
  std::cout << comparison.asked() - comparison.failed() << " of " << comparison.asked()
            << " live answers are as they should be\n";
  return comparison.failed() == 0 ? 0 : 1;
}

}  // namespace
}  // namespace vok::test

int main(int argc, char** argv) {
  try {
    if (argc == 4) return vok::test::Compare(argv[1], argv[2], argv[3]);
    if (argc == 3) vok::test::WriteTables(argv[1], argv[2]);
    return argc == 3 ? 0 : 2;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
  }
}
