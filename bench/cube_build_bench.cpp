// Building a cube of a ledger's shape from CSV, and reading slices of it; bench/cube_build
// compares.
//   bench_cube_build write FACTS FOLDER      the tables
//   bench_cube_build build FOLDER [THREADS]  from them; prints seconds and the largest memory in MB
//   bench_cube_build read FOLDER             slices of the cube
#include <sys/resource.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/storage/cube_file.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"

namespace {

using vok::olap::FactQuery;
using Clock = std::chrono::steady_clock;

constexpr int kMonths = 60;
constexpr int kLines = 10000;
constexpr int kFiles = 100;
constexpr int kMoney = 13;

constexpr const char* kSchema = R"(<Schema name="Bench"><Cube name="QEL"><Table name="fact"/>
<Dimension name="Date" type="TimeDimension" foreignKey="date_id"><Hierarchy primaryKey="id"><Table name="dim_date"/>
  <Level name="Year" column="y" type="Integer"/><Level name="Month" column="m" type="Integer"/></Hierarchy></Dimension>
<Dimension name="QeL" foreignKey="qel_id"><Hierarchy name="QeL" hasAll="false" primaryKey="id"><Table name="dim_qel"/>
  <Level name="QeL" column="caption" uniqueMembers="true"/></Hierarchy></Dimension>
<Dimension name="ActX" foreignKey="act_id"><Hierarchy name="xlFile" primaryKey="id"><Table name="dim_act"/>
  <Level name="Ledger" column="ledger"/><Level name="File" column="file"/></Hierarchy></Dimension>
<Dimension name="Opening_Balance" foreignKey="ob"><Hierarchy primaryKey="ob"><Table name="dim_ob"/>
  <Level name="Opening_Balance" column="ob" type="Integer"/></Hierarchy></Dimension>
<Dimension name="MoneySet" foreignKey="money_id"><Hierarchy primaryKey="id"><Table name="dim_money"/>
  <Level name="MoneySet" column="code"/></Hierarchy></Dimension>
<Measure name="Amount" column="amount" aggregator="sum"/><Measure name="Units" column="units" aggregator="sum"/>
</Cube></Schema>)";

void Write(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

std::string Padded(int number) {
  const std::string digits = std::to_string(number);
  return std::string(5 - digits.size(), '0') + digits;
}

void WriteDimensions(const std::string& folder) {
  std::string dates = "id,y,m\n";
  std::string lines = "id,caption\n";
  std::string files = "id,ledger,file\n";
  std::string money = "id,code\n";
  for (int i = 0; i < kMonths; ++i) {
    dates += std::to_string(i) + "," + std::to_string(2018 + i / 12) + "," +
             std::to_string(i % 12 + 1) + "\n";
  }
  for (int i = 0; i < kLines; ++i) {
    lines += std::to_string(i) + "," + Padded(i) + "\tLine\tשורה\tСтрока\tZeile\t\t\t\t\t\n";
  }
  for (int i = 0; i < kFiles; ++i) {
    files += std::to_string(i) + ",Ledger" + std::to_string(i / 20 + 1) + ",File" +
             std::to_string(i % 20 + 1) + "\n";
  }
  for (int i = 0; i < kMoney; ++i) money += std::to_string(i) + ",M" + std::to_string(i) + "\n";
  Write(folder + "/schema.xml", kSchema);
  Write(folder + "/dim_date.csv", dates);
  Write(folder + "/dim_qel.csv", lines);
  Write(folder + "/dim_act.csv", files);
  Write(folder + "/dim_ob.csv", "ob\n0\n1\n");
  Write(folder + "/dim_money.csv", money);
}

void WriteFacts(const std::string& folder, int facts) {
  std::mt19937 random(20100401);
  const auto below = [&](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  std::ofstream out(folder + "/fact.csv", std::ios::binary);
  out << "date_id,qel_id,act_id,ob,money_id,amount,units\n";
  for (int i = 0; i < facts; ++i) {
    const int cents = below(2000000);
    out << below(kMonths) << ',' << below(kLines) << ',' << below(kFiles) << ','
        << (below(10) == 0 ? 1 : 0) << ',' << below(kMoney) << ',' << (below(3) == 0 ? "-" : "")
        << cents / 100 << '.' << cents % 100 / 10 << cents % 10 << ',' << below(500) << '\n';
  }
}

double Since(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

template <typename Work>
double MedianMilliseconds(const Work& work) {
  constexpr int kRuns = 15;
  std::vector<double> times;
  for (int run = 0; run < kRuns; ++run) {
    const auto begin = Clock::now();
    work();
    times.push_back(1000 * Since(begin));
  }
  std::nth_element(times.begin(), times.begin() + kRuns / 2, times.end());
  return times[kRuns / 2];
}

void MeasureBuild(const std::string& folder, unsigned threads) {
  vok::PosixFiles files;
  const auto begin = Clock::now();
  vok::olap::BuildCubeFile(files, vok::IcuLocale("en_US"),
                           {folder + "/schema.xml", folder, folder + "/bench.cub", {}, threads},
                           {});
  const double seconds = Since(begin);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("%.3f %ld\n", seconds, usage.ru_maxrss / 1024);
}

/// Ledger 1, opening balance 0, by lines: the hierarchies are those of the schema, in order.
FactQuery LedgerQuery(uint32_t first_month, uint32_t months) {
  return {{0, 1}, {{{first_month, first_month + months}}, {}, {{0, 20}}, {{0, 1}}}, {{1, 0}}};
}

void MeasureReads(const std::string& path) {
  const vok::PosixFiles files;
  const auto begin = Clock::now();
  const auto file = vok::olap::CubeFile::Open(files, path);
  const double opened = 1000 * Since(begin);
  const auto& facts = *file->cubes()[0].facts;
  facts.Read(LedgerQuery(24, 3));
  std::printf("open             %8.3f ms, with the first read %.3f ms\n", opened,
              1000 * Since(begin));
  const struct {
    const char* name;
    FactQuery query;
  } reads[] = {{"quarter, ledger", LedgerQuery(24, 3)},
               {"month, ledger", LedgerQuery(24, 1)},
               {"one file", {{0, 1}, {{}, {}, {{7, 8}}, {{0, 1}}}, {{1, 0}}}},
               {"one line", {{0, 1}, {{}, {{5000, 5001}}}, {{0, 2}}}},
               {"one money set", {{0, 1}, {{}, {}, {}, {}, {{3, 4}}}, {{1, 0}}}},
               {"a tenth", {{0}, {{{12, 18}}}, {{1, 0}}}},
               {"all facts", {{0, 1}, {}, {{1, 0}}}},
               {"all, ungrouped", {{0}, {}, {}}}};
  for (const auto& read : reads) {
    std::printf("%-16s %8.3f ms\n", read.name, MedianMilliseconds([&] { facts.Read(read.query); }));
  }
}

int Number(const std::string& text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + count);
  if (words.size() == 3 && words[0] == "write") {
    std::filesystem::create_directories(words[2]);
    WriteDimensions(words[2]);
    WriteFacts(words[2], Number(words[1]));
  } else if (words.size() >= 2 && words[0] == "build") {
    MeasureBuild(words[1], words.size() > 2 ? static_cast<unsigned>(Number(words[2])) : 0);
  } else if (words.size() == 2 && words[0] == "read") {
    MeasureReads(words[1] + "/bench.cub");
  } else {
    std::fputs("see the beginning of cube_build_bench.cpp\n", stderr);
    return 2;
  }
}
