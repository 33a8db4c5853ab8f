// The parts of bench/query, each a process of its own; see there.
//
//   bench_query build FOLDER CUBE        builds the cube; facts a second, memory and bytes a fact
//   bench_query load FOLDER DATABASE     the same facts into SQLite
//   bench_query compare CUBE DATABASE    warm queries side by side, round by round
//   bench_query warm CUBE CUBE WORDS     the system's query on two cubes, side by side
//   bench_query ask CUBE                 the system's query alone
//   bench_query scan CUBE FOLDER         the same beside a scan written for nothing else
//   bench_query fresh CUBE DATABASE      open, query and close, each in a new process
//   bench_query once-cube CUBE           what `fresh` starts
//   bench_query once-sqlite DATABASE     what `fresh` starts
//   bench_query sql                      the question as SQL
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/query_peer.h"
#include "bench/query_scan.h"
#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/mdx/engine.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"

extern char** environ;

namespace vok::bench {
namespace {

using Clock = std::chrono::steady_clock;

double MillisecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// The cube's view, and the file that it lives in.
class OpenedCube {
 public:
  explicit OpenedCube(const std::string& path)
      : file_(olap::CubeFile::Open(PosixFiles(), path)),
        view_(std::make_shared<olap::CubeView>(
            std::shared_ptr<const olap::StoredCube>(file_, &file_->cubes()[0]), locale_)) {}

  const olap::Hierarchy& Hierarchy(std::size_t index) const {
    return view_->model().hierarchies[index];
  }
  std::unique_ptr<olap::MdxResult> Run(const std::string& mdx) const {
    return olap::RunMdx(view_, mdx);
  }

 private:
  IcuLocale locale_{"en_US"};
  std::shared_ptr<const olap::CubeFile> file_;
  std::shared_ptr<const olap::CubeView> view_;
};

/// The last member below the month, and how many leaves the month has.
std::pair<std::string, uint32_t> MonthOf2024(const olap::Hierarchy& dates, int month) {
  constexpr std::size_t kMonthLevel = 3;
  constexpr int kMonthsBefore = 24;
  const auto member = static_cast<olap::MemberId>(dates.levels()[kMonthLevel].members.begin +
                                                  kMonthsBefore + static_cast<uint32_t>(month));
  const olap::IdRange leaves = dates.Leaves(member);
  const auto last = dates.levels().back().members.begin + leaves.end - 1;
  return {dates.UniqueName(last), leaves.size()};
}

/// What the system sends: twelve periods, quantity and money of each, by lines.
std::string QuestionMdx(const OpenedCube& cube, Slice slice) {
  std::string members;
  std::string names;
  for (int month = 0; month < 12; ++month) {
    const auto [last, count] = MonthOf2024(cube.Hierarchy(0), month);
    const std::string number = std::to_string(month);
    for (const auto& [prefix, measure] : {std::pair{"Q", "Units Quantity"}, {"m", "Amount"}}) {
      members += "MEMBER [DATE].[" + (prefix + number) + "] AS \r\n'SUM(LastPeriods(" +
                 std::to_string(count) + "," + last + "),[Measures].[" + measure +
                 "]) ', FORMAT_STRING = '#0.00' \r\n";
      names += (names.empty() ? "" : ",") + ("\r\n[DATE].[" + (prefix + number) + "]");
    }
  }
  std::string where = "[ActX].[xlFile].[All].[Domestic]";
  if (slice == Slice::kFile) where += ".[Sales book]";
  if (slice == Slice::kMoneySet) where = "[MoneySet].[USD]";
  return "WITH " + members + "SELECT NON EMPTY{ " + names +
         "} ON COLUMNS,  NON Empty {[QeL].[QeL].Members}  ON ROWS  FROM  [LedgerQEL] WHERE ( " +
         where + ", [Opening_Balance].[All].[1])";
}

double SumOfCells(const olap::MdxResult& result) {
  double sum = 0;
  for (std::size_t cell = 0; cell < result.CellCount(); ++cell) {
    const Value value = result.Cell(cell);
    if (const double* number = value.As<double>()) sum += *number;
  }
  return sum;
}

/// Both works in turn, so that a change of the machine's speed reaches both.
void SideBySide(const char* name, const std::function<void()>& own,
                const std::function<void()>& other, const char* other_name) {
  constexpr int kRounds = 15;
  std::vector<double> own_times;
  std::vector<double> other_times;
  std::vector<double> ratios;
  own();
  other();
  for (int round = 0; round < kRounds; ++round) {
    auto begin = Clock::now();
    own();
    own_times.push_back(MillisecondsSince(begin));
    begin = Clock::now();
    other();
    other_times.push_back(MillisecondsSince(begin));
    ratios.push_back(own_times.back() / other_times.back());
  }
  std::printf("%-34s %10.3f ms   %-18s %10.3f ms   ratio %7.4f\n", name, Median(own_times),
              other_name, Median(other_times), Median(ratios));
  std::fflush(stdout);
}

void RequireSame(const char* name, double own, double other) {
  if (std::abs(own - other) <= 1e-9 * std::abs(other)) return;
  std::printf("%s: the answers differ, %.2f and %.2f\n", name, own, other);
  std::exit(1);
}

void CompareWithScan(const std::string& cube_path, const std::string& folder) {
  const OpenedCube cube(cube_path);
  HandWrittenScan scan(folder);
  const std::string mdx = QuestionMdx(cube, Slice::kLedger);
  scan.Ask();
  RequireSame("scan", SumOfCells(*cube.Run(mdx)), scan.Total());
  SideBySide(
      "query, one ledger, warm", [&] { cube.Run(mdx); }, [&] { scan.Ask(); }, "hand-written scan");
}

void Compare(const std::string& cube_path, const std::string& database) {
  const OpenedCube cube(cube_path);
  Peer peer(database);
  const struct {
    const char* name;
    Slice slice;
  } works[] = {{"query, one ledger, warm", Slice::kLedger},
               {"query, one file, warm", Slice::kFile},
               {"query, one money set, warm", Slice::kMoneySet}};
  for (const auto& work : works) {
    const std::string mdx = QuestionMdx(cube, work.slice);
    RequireSame(work.name, SumOfCells(*cube.Run(mdx)), peer.Ask(work.slice));
    SideBySide(
        work.name, [&] { cube.Run(mdx); }, [&] { peer.Ask(work.slice); }, "SQLite");
  }
}

void CompareCubes(const std::string& path, const std::string& other_path, const char* name) {
  const OpenedCube cube(path);
  const OpenedCube other(other_path);
  const std::string mdx = QuestionMdx(cube, Slice::kLedger);
  const std::string other_mdx = QuestionMdx(other, Slice::kLedger);
  SideBySide(
      name, [&] { cube.Run(mdx); }, [&] { other.Run(other_mdx); }, "the cube compared");
}

void RunOwn(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), std::filesystem::read_symlink("/proc/self/exe"));
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  pid_t child = 0;
  int status = 1;
  if (posix_spawn(&child, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0 ||
      waitpid(child, &status, 0) != child || status != 0) {
    std::fprintf(stderr, "bench_query: a process failed\n");
    std::exit(1);
  }
}

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

/// What the process holds now, without the pages of mapped files, which are the page cache's.
long OwnKilobytes() {
  long total = 0;
  long resident = 0;
  long shared = 0;
  std::ifstream("/proc/self/statm") >> total >> resident >> shared;
  return (resident - shared) * (sysconf(_SC_PAGESIZE) / 1024);
}

void Build(const std::string& folder, const std::string& cube) {
  PosixFiles files;
  const IcuLocale locale("en_US");
  long most_own = 0;
  const auto look = [&](const olap::BuildStep&) { most_own = std::max(most_own, OwnKilobytes()); };
  const auto begin = Clock::now();
  const auto report =
      olap::BuildCubeFile(files, locale, {folder + "/schema.xml", folder, cube}, look);
  const double seconds = MillisecondsSince(begin) / 1000;
  const auto facts = static_cast<double>(report.cubes[0].facts);
  std::printf("build                              %.3f s, %.2f million facts/s; %llu cells\n",
              seconds, facts / seconds / 1e6,
              static_cast<unsigned long long>(report.cubes[0].stored_cells));
  std::printf(
      "memory                             %.1f bytes a fact of its own, %.1f with the mapped CSV\n",
      1024.0 * static_cast<double>(most_own) / facts,
      1024.0 * static_cast<double>(PeakKilobytes()) / facts);
  std::printf("cube file                          %.2f bytes a fact\n",
              static_cast<double>(report.file_bytes) / facts);
}

int Main(const std::vector<std::string>& words) {
  const std::string what = words.empty() ? "" : words[0];
  if (what == "build" && words.size() == 3) {
    Build(words[1], words[2]);
  } else if (what == "load" && words.size() == 3) {
    LoadPeer(words[1], words[2]);
  } else if (what == "compare" && words.size() == 3) {
    Compare(words[1], words[2]);
  } else if (what == "warm" && words.size() == 4) {
    CompareCubes(words[1], words[2], words[3].c_str());
  } else if (what == "fresh" && words.size() == 3) {
    SideBySide(
        "open, query, close, fresh",
        [&] {
          RunOwn({"once-cube", words[1]});
        },
        [&] {
          RunOwn({"once-sqlite", words[2]});
        },
        "SQLite");
  } else if (what == "scan" && words.size() == 3) {
    CompareWithScan(words[1], words[2]);
  } else if (what == "ask" && words.size() == 2) {
    CompareCubes(words[1], words[1], "query, one ledger, warm, twice");
  } else if (what == "once-cube" && words.size() == 2) {
    const OpenedCube cube(words[1]);
    cube.Run(QuestionMdx(cube, Slice::kLedger));
  } else if (what == "once-sqlite" && words.size() == 2) {
    Peer(words[1]).Ask(Slice::kLedger);
  } else if (what == "sql" && words.size() == 1) {
    std::puts(QuestionSql(Slice::kLedger).c_str());
  } else {
    std::fprintf(stderr, "usage: see the head of bench/query_bench.cpp\n");
    return 2;
  }
  return 0;
}

}  // namespace
}  // namespace vok::bench

int main(int count, char** arguments) {
  return vok::bench::Main({arguments + 1, arguments + count});
}
