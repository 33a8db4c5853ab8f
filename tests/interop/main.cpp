// Asks the embedded engine and a server the same questions and compares their answers.
//
//   interop RUN SEED                          writes the random cubes of SEED into RUN
//   interop RUN SEED PORT CASES [RANDOM]      asks a server on this machine that serves them
//
// RUN holds schemas in schemas/ and their tables in csv/; cube files are built from them in cubes/.
// CASES: folder of case files; with VOKCUBE_RECORD in the environment our answers are recorded
// there. RANDOM: how many random queries of the system's form, and as many on the random cubes, 500
// by default. The exit code is 1 when an answer differs.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/olap_provider.h"
#include "providers/cube/xmla/xmla_provider.h"
#include "providers/http/curl/curl_transport.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"
#include "tests/support/answers/answer.h"
#include "tests/support/answers/system_query.h"
#include "tests/support/reference_olap/random_cube.h"

namespace vok::test {
namespace {

constexpr int kRandomCubes = 22;
constexpr int kQueriesOfEachCube = 25;
constexpr int kPatienceSeconds = 60;
/// One in so many random queries may be refused.
constexpr int kMostRefused = 20;

std::string CubeName(int number) { return "Random" + std::to_string(number); }

plain::RandomCube CubeOf(uint64_t seed, int number) {
  return plain::MakeRandomCube(seed + static_cast<uint64_t>(number), CubeName(number));
}

void WriteRandomCubes(const std::string& run, uint64_t seed) {
  std::ofstream schema(run + "/schemas/random.xml");
  schema << "<Schema name=\"random\">\n";
  for (int number = 0; number < kRandomCubes; ++number) {
    const plain::RandomCube random = CubeOf(seed, number);
    schema << random.schema;
    for (const auto& [table, csv] : random.tables) {
      std::ofstream(run + "/csv/" + table + ".csv") << csv;
    }
  }
  schema << "</Schema>\n";
}

/// Formats are compared where the query or the measure gives them. For a calculated member without
/// one the server takes that of some measure in its formula; we show all digits.
bool HasFormats(const std::string& query) {
  return query.find("MEMBER [") == std::string::npos ||
         query.find("FORMAT_STRING") != std::string::npos;
}

struct Comparison {
  /// Gives our answer. `may_refuse`: the server may not be able to do what nobody thought of.
  Answer Ask(const Case& question, bool may_refuse = false) {
    ++asked;
    const Answer theirs = server.Ask(question.catalog, question.query);
    Answer own = ours.Ask(question.catalog, question.query);
    const std::string difference = Difference(theirs, own, HasFormats(question.query));
    if (may_refuse && !theirs.failure.empty() && own.failure.empty()) {
      ++refused;
    } else if (difference.empty() != question.reason.empty()) {
      ++failed;
      std::cout << "FAILED " << question.name << '\n' << question.query << difference << "\n\n";
    }
    return own;
  }

  const Side& server;
  const Side& ours;
  int asked = 0, failed = 0;
  int refused = 0;  ///< by the server alone
};

void AskCases(Comparison& comparison, const std::string& folder) {
  std::string answers;
  for (const Case& each : ReadCases(folder)) {
    answers += "case " + each.name + '\n' + Shown(comparison.Ask(each), true);
  }
  if (std::getenv("VOKCUBE_RECORD")) std::ofstream(folder + "/cases.answers") << answers;
  std::cout << comparison.asked << " cases asked\n";
}

void AskRandomCube(Comparison& comparison, uint64_t seed, int number) {
  const std::string name = CubeName(number % kRandomCubes);
  const plain::RandomCube random = CubeOf(seed, number % kRandomCubes);
  // A count over all of no facts is 0 there: the database says so, without a word of MDX.
  if (random.cube.facts.empty()) return;
  for (const auto& query : plain::RandomQueries(
           random.cube, name, seed + static_cast<uint64_t>(number), true, kQueriesOfEachCube)) {
    comparison.Ask({name, "random", query.mdx + '\n', "", ""}, true);
  }
}

/// Says so when the server refuses too many random queries to call it a comparison.
int Compare(const std::string& run, uint64_t seed, const std::string& port,
            const std::string& cases, int count) {
  PosixFiles files;
  const IcuLocale locale("en_US");
  olap::OlapCubeProvider our_provider(files, locale);
  const auto patient = [] {
    ServerSettings settings;
    settings.total_seconds = kPatienceSeconds;
    return settings;
  };
  xmla::XmlaCubeProvider server_provider(locale, {patient, NewTransport<CurlTransport>()});
  Side ours(our_provider);
  Side server(server_provider);
  for (const auto& schema : std::filesystem::directory_iterator(run + "/schemas")) {
    const std::string catalog = schema.path().stem().string();
    const std::string output = run + "/cubes/" + catalog + ".cub";
    olap::BuildCubeFile(files, locale, {schema.path().string(), run + "/csv", output}, {});
    ours.Open(catalog, "Data Source=" + output);
    server.Open(catalog,
                "Data Source=http://127.0.0.1:" + port + "/xmla;Initial Catalog=" + catalog);
  }
  Comparison comparison{server, ours};
  AskCases(comparison, cases);
  std::cout << "Random queries, seed " << seed << std::endl;
  plain::Dice dice(seed);
  for (int i = 0; i < count; ++i) {
    comparison.Ask({"random " + std::to_string(i), "sample", RandomSystemQuery(dice), "", ""});
  }
  std::cout << comparison.asked << " asked with those of the system's form" << std::endl;
  for (int i = 0, all = comparison.asked + count; comparison.asked < all; ++i) {
    AskRandomCube(comparison, seed, i);
  }
  std::cout << comparison.asked - comparison.failed << " of " << comparison.asked
            << " answers are as they should be; " << comparison.refused
            << " random queries the server cannot answer\n";
  const bool is_comparison = comparison.refused * kMostRefused <= count;
  if (!is_comparison) std::cout << "FAILED: the server refuses too many to call it a comparison\n";
  return comparison.failed == 0 && is_comparison ? 0 : 1;
}

}  // namespace
}  // namespace vok::test

int main(int argc, char** argv) {
  using namespace vok::test;  // NOLINT: a program of one file
  if (argc != 3 && argc < 5) {
    std::cerr << "usage: interop RUN SEED [PORT CASES [RANDOM]]\n";
    return 2;
  }
  try {
    const uint64_t seed = std::stoull(argv[2]);
    if (argc > 3) {
      return Compare(argv[1], seed, argv[3], argv[4], argc > 5 ? std::stoi(argv[5]) : 500);
    }
    WriteRandomCubes(argv[1], seed);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
  }
}
