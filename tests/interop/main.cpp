// Asks the embedded engine and a server the same questions and compares their answers.
//
//   interop PORT CASES SCHEMAS TABLES FOLDER [RANDOM [SEED]]
//
// PORT: of the server on this machine. CASES: folder of case files. SCHEMAS, TABLES: what the
// server serves, among them the random cubes of SEED; cube files are built from them in FOLDER.
// RANDOM: how many random queries of the system's form, and as many on the random cubes, 500 by
// default. The exit code is 1 when an answer differs.
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/olap_provider.h"
#include "providers/cube/xmla/xmla_provider.h"
#include "providers/http/curl/curl_transport.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"
#include "tests/interop/answer.h"
#include "tests/interop/case_file.h"
#include "tests/interop/random_queries.h"
#include "tests/support/reference_olap/random_cube.h"
#include "tests/support/reference_olap/random_mdx.h"

namespace vok::interop {
namespace {

constexpr const char* kBuilderCatalog = "sample";
constexpr const char* kRandomCatalog = "random";
constexpr int kQueriesOfEachCube = 25;
constexpr int kPatienceSeconds = 60;
/// One in so many random queries may be refused.
constexpr int kMostRefused = 20;

/// Formats are compared where the query or the measure gives them. For a calculated member without
/// one the server takes that of some measure in its formula; we show all digits.
bool HasFormats(const std::string& query) {
  return query.find("MEMBER [") == std::string::npos ||
         query.find("FORMAT_STRING") != std::string::npos;
}

class Comparison {
 public:
  Comparison(const Side& server, const Side& ours) : server_(server), ours_(ours) {}

  /// Of a query of nobody's making the server may refuse what it cannot do.
  void AskAnyQuery(const Case& asked) {
    const Answer server = server_.Ask(asked.catalog, asked.query);
    const Answer ours = ours_.Ask(asked.catalog, asked.query);
    ++asked_;
    if (!server.failure.empty() && ours.failure.empty()) {
      ++refused_;
      return;
    }
    const std::string difference = Difference(server, ours, HasFormats(asked.query));
    if (!difference.empty()) Tell(asked, difference);
  }

  void Ask(const Case& asked) {
    ++asked_;
    const Answer server = server_.Ask(asked.catalog, asked.query);
    const Answer ours = ours_.Ask(asked.catalog, asked.query);
    const std::string difference = Difference(server, ours, HasFormats(asked.query));
    if (asked.reason.empty()) {
      if (!difference.empty()) Tell(asked, difference);
    } else if (difference.empty()) {
      Tell(asked, "the answers agree, though they should differ: " + asked.reason);
    } else if (Shown(ours) != asked.expected) {
      Tell(asked, "another answer than we should give: " + Shown(ours));
    }
  }

  int asked() const { return asked_; }
  int refused() const { return refused_; }
  int failed() const { return failed_; }

 private:
  void Tell(const Case& asked, const std::string& what) {
    ++failed_;
    std::cout << "FAILED " << asked.name << '\n' << asked.query << what << "\n\n";
  }

  const Side& server_;
  const Side& ours_;
  int asked_ = 0;
  int refused_ = 0;  ///< by the server alone
  int failed_ = 0;
};

void AskRandomCube(Comparison& comparison, int number, uint64_t seed) {
  const std::string name = "Random" + std::to_string(number);
  const uint64_t cube_seed = seed + static_cast<uint64_t>(number);
  const plain::RandomCube random = plain::MakeRandomCube(cube_seed, name);
  // A count over all of no facts is 0 there: the database says so, without a word of MDX.
  if (random.cube.facts.empty()) return;
  for (const auto& query :
       plain::RandomQueries(random.cube, name, cube_seed, true, kQueriesOfEachCube)) {
    comparison.AskAnyQuery({name, kRandomCatalog, query.mdx + '\n', "", ""});
  }
}

int Run(int argc, char** argv) {
  PosixFiles files;
  const IcuLocale locale("en_US");
  olap::OlapCubeProvider our_provider(files, locale);
  const auto patient = [] {
    HttpSettings settings;
    settings.total_seconds = kPatienceSeconds;
    return settings;
  };
  xmla::XmlaCubeProvider server_provider(locale, {patient, NewTransport<CurlTransport>()});
  Side ours(our_provider);
  Side server(server_provider);
  for (const auto& schema : std::filesystem::directory_iterator(argv[3])) {
    const std::string catalog = schema.path().stem().string();
    const std::string output = argv[5] + ('/' + catalog) + ".cub";
    olap::BuildCubeFile(files, locale, {schema.path().string(), argv[4], output}, {});
    ours.Open(catalog, "Data Source=" + output);
    server.Open(catalog, std::string("Data Source=http://127.0.0.1:") + argv[1] +
                             "/xmla;Initial Catalog=" + catalog);
  }
  Comparison comparison(server, ours);
  for (const Case& each : ReadCases(argv[2])) comparison.Ask(each);
  std::cout << comparison.asked() << " cases asked\n";

  const uint64_t seed = argc > 7 ? std::stoull(argv[7]) : 1;
  const int count = argc > 6 ? std::stoi(argv[6]) : 500;
  std::cout << "Random queries, seed " << seed << std::endl;
  plain::Dice dice(seed);
  for (int i = 0; i < count; ++i) {
    comparison.Ask({"random " + std::to_string(i), kBuilderCatalog, RandomQuery(dice), "", ""});
  }
  std::cout << comparison.asked() << " asked with those of the system's form" << std::endl;
  for (int i = 0; i < count; i += kQueriesOfEachCube) {
    AskRandomCube(comparison, i / kQueriesOfEachCube, seed);
  }
  std::cout << comparison.asked() - comparison.failed() << " of " << comparison.asked()
            << " answers are as they should be; " << comparison.refused()
            << " random queries the server cannot answer\n";
  if (comparison.refused() * kMostRefused > count) {
    std::cout << "FAILED: the server refuses too many of them to call it a comparison\n";
    return 1;
  }
  return comparison.failed() == 0 ? 0 : 1;
}

}  // namespace
}  // namespace vok::interop

int main(int argc, char** argv) {
  if (argc < 6) {
    std::cerr << "usage: interop PORT CASES SCHEMAS TABLES FOLDER [RANDOM [SEED]]\n";
    return 2;
  }
  try {
    return vok::interop::Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
  }
}
