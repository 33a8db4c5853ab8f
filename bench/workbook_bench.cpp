// How long a workbook takes, how large it is and how much memory its writer needs: ours and others'
// in turn, each a process of its own.
//
//   bench_workbook write ours|peer FILE LINES PASSES    the writer alone
//   bench_workbook job DATABASE FILE PASSES             SQLite and libxlsxwriter
//   bench_workbook compare TITLE ROUNDS OUR_FILE THEIR_FILE OURS... -- THEIRS...
//   bench_workbook peak TITLE COMMAND...
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "bench/workbook_lines.h"
#include "bench/workbook_peer.h"
#include "providers/workbook/xlsx/xlsx_spreadsheet.h"
#include "system/posix/posix_files.h"

namespace vok::bench {
namespace {

void AddLines(SpreadsheetApplication& application, std::size_t above, std::size_t lines) {
  for (std::size_t done = 0; done < lines;) {
    const std::size_t count = std::min(application.RowsAtOnce(), lines - done);
    CellBlock block(count, kCaptions + 2 * kPeriods);
    for (std::size_t row = 1; row <= count; ++row) {
      const Line line = LineOf(done + row - 1);
      for (std::size_t i = 0; i < kCaptions; ++i) block.SetText(row, i + 1, line.captions[i]);
      for (std::size_t i = 0; i < line.numbers.size(); ++i) {
        block.SetNumber(row, kCaptions + i + 1, line.numbers[i]);
      }
    }
    application.SetFormula(above + done + 1, 1, std::move(block));
    done += count;
  }
}

WorkbookLook Look() {
  WorkbookLook look;
  look.captions = kCaptions;
  for (std::size_t i = 0; i < kPeriods; ++i) {
    look.formats.insert(look.formats.end(), {"#,##0", "#,##0.00"});
  }
  return look;
}

void WriteOurs(const std::string& file, std::size_t lines, int passes) {
  PosixFiles files;
  xlsx::XlsxSpreadsheet spreadsheet(files);
  const auto output = spreadsheet.NewOutput(file, true);
  output->SetLook(Look());
  for (int pass = 0; pass < passes; ++pass) {
    const auto application = output->NewApplication();
    if (pass == 0) {
      application->AddWorkbook();
      application->SetActiveSheetName("Data");
      application->SetColumnsNumberFormat("A:K", "@");
    } else {
      application->OpenWorkbook(file);
    }
    AddLines(*application, pass == 0 ? 1 : application->CurrentRegionRows("A1"), lines);
    application->SaveAs(file, kOpenXmlWorkbook);
  }
  output->Commit();
}

struct Cost {
  double milliseconds = 0;
  double bytes = 0;
  double mebibytes = 0;  ///< the process at its largest
};

using Command = std::vector<std::string>;

[[noreturn]] void Become(const Command& command) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const int nowhere = ::open("/dev/null", O_WRONLY);
  ::dup2(nowhere, STDOUT_FILENO);
  ::execv(arguments[0], arguments.data());
  ::_exit(127);
}

Cost Run(const Command& command, const std::string& file) {
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = ::fork();
  if (child == 0) Become(command);
  int status = 0;
  rusage usage = {};
  ::wait4(child, &status, 0, &usage);
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
  if (status != 0) {
    std::cerr << "failed: " << command[0] << ' ' << command[1] << '\n';
    std::exit(1);
  }
  struct stat written = {};
  if (!file.empty()) ::stat(file.c_str(), &written);
  return {taken.count(), static_cast<double>(written.st_size),
          static_cast<double>(usage.ru_maxrss) / 1024};
}

double Median(const std::vector<Cost>& costs, double Cost::*part) {
  std::vector<double> values;
  for (const Cost& cost : costs) values.push_back(cost.*part);
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void Compare(const char* title, int rounds, const std::string (&files)[2],
             const Command (&commands)[2]) {
  std::vector<Cost> costs[2];
  for (int round = 0; round < rounds; ++round) {
    for (const int side : {0, 1}) costs[side].push_back(Run(commands[side], files[side]));
  }
  double medians[2][3];
  for (const int side : {0, 1}) {
    medians[side][0] = Median(costs[side], &Cost::milliseconds);
    medians[side][1] = Median(costs[side], &Cost::bytes) / 1024;
    medians[side][2] = Median(costs[side], &Cost::mebibytes);
  }
  std::printf("%-44s", title);
  constexpr const char* kUnits[] = {"ms", "kB", "MiB"};
  for (const int part : {0, 1, 2}) {
    const double ours = medians[0][part], theirs = medians[1][part];
    std::printf("  %8.0f / %8.0f %s = %5.3f", ours, theirs, kUnits[part], ours / theirs);
  }
  std::printf("\n");
}

Command Rest(const Command& words, std::size_t first) {
  return {words.begin() + static_cast<std::ptrdiff_t>(first), words.end()};
}

int Main(const Command& words) {
  const std::string what = words.size() > 3 ? words[1] : "";
  if (what == "write" && words.size() == 6) {
    const auto write = words[2] == "ours" ? WriteOurs : WritePeer;
    write(words[3], std::stoul(words[4]), std::stoi(words[5]));
  } else if (what == "job" && words.size() == 5) {
    RunPeer(words[2], words[3], std::stoi(words[4]));
  } else if (what == "peak") {
    const Cost cost = Run(Rest(words, 3), "");
    std::printf("%-44s  %8.0f ms  %8.0f MiB\n", words[2].c_str(), cost.milliseconds,
                cost.mebibytes);
  } else if (what == "compare") {
    const auto parting = std::find(words.begin(), words.end(), "--");
    const auto theirs = static_cast<std::size_t>(parting - words.begin()) + 1;
    Compare(words[2].c_str(), std::stoi(words[3]), {words[4], words[5]},
            {Command(words.begin() + 6, parting), Rest(words, theirs)});
  } else {
    std::cerr << "See the head of bench/workbook_bench.cpp\n";
    return 2;
  }
  return 0;
}

}  // namespace
}  // namespace vok::bench

int main(int count, char** words) { return vok::bench::Main({words, words + count}); }
