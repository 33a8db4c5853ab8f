// Reading a cube server's answer of 100,000 rows and 24 columns, and the memory that it takes.
//
//   bench_xmla              the parser's speed in bytes of the answer
//   bench_xmla memory       reads one answer that is made as it is read, and prints the process's
//                           memory with the cellset, and the most that it took
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <charconv>
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>

#include "providers/cube/xmla/answer.h"
#include "providers/cube/xmla/cellset_reader.h"

namespace {

using namespace vok::xmla;

constexpr int kRows = 100000;
constexpr int kColumns = 24;

std::string Tuple(const std::string& unique_name, const std::string& caption) {
  return "            <Tuple>\n              <Member Hierarchy=\"QeL\">\n                <UName>" +
         unique_name + "</UName>\n                <Caption>" + caption +
         "</Caption>\n                <LName>[QeL].[Item]</LName>\n"
         "                <LNum>1</LNum>\n                <DisplayInfo>0</DisplayInfo>\n"
         "              </Member>\n            </Tuple>\n";
}

std::string Cell(int ordinal) {
  char value[32];
  const auto end = std::to_chars(value, value + sizeof value, ordinal * 7919LL % 1000003 / 4.0).ptr;
  const std::string number(value, end);
  return "        <Cell CellOrdinal=\"" + std::to_string(ordinal) +
         "\">\n          <Value xsi:type=\"xsd:double\">" + number +
         "</Value>\n          <FmtValue>" + number +
         "</FmtValue>\n          <FormatString>#0.00</FormatString>\n        </Cell>\n";
}

/// Calls `give` with the answer, part by part, as a server lays it out.
template <typename Give>
void MakeAnswer(Give give) {
  give(
      "<?xml version=\"1.0\"?>\n<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"s\"><SOAP-ENV:Body>"
      "<c:ExecuteResponse xmlns:c=\"c\"><c:return><root xmlns:xsi=\"i\" xmlns:xsd=\"d\">"
      "<Axes><Axis name=\"Axis0\"><Tuples>");
  for (int i = 0; i < kColumns; ++i) {
    const std::string name = (i % 2 == 0 ? "Q" : "m") + std::to_string(i / 2);
    give(Tuple("[Date].[" + name + "]", name));
  }
  give("</Tuples></Axis><Axis name=\"Axis1\"><Tuples>");
  for (int i = 0; i < kRows; ++i) {
    const std::string number = std::to_string(100000 + i);
    const std::string name = number + "&#9;Section 1&#9;Line " + number + "&#9;&#9;A-" + number;
    give(Tuple("[QeL].[" + name + "]", name));
  }
  give("</Tuples></Axis></Axes><CellData>");
  for (int i = 0; i < kRows * kColumns; ++i) give(Cell(i));
  give("</CellData></root></c:return></c:ExecuteResponse></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

class AnswerRead {
 public:
  void Take(std::string_view piece) { answer_.Take(head_, piece); }
  void Finish() { answer_.Finish(head_); }
  const CellsetData& data() const { return data_; }

 private:
  HttpHead head_{200, "text/xml", ""};
  CellsetData data_;
  CellsetReader reader_{data_};
  Answer answer_{"http://h", 0, reader_};
};

void ReadCellset(benchmark::State& state) {
  std::string xml;
  MakeAnswer([&](std::string_view part) { xml += part; });
  constexpr std::size_t kPiece = 64 << 10;
  for (auto _ : state) {
    AnswerRead read;
    for (std::size_t i = 0; i < xml.size(); i += kPiece) {
      read.Take(std::string_view(xml).substr(i, kPiece));
    }
    read.Finish();
    benchmark::DoNotOptimize(read.data().AxisCount());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(xml.size()));
}
BENCHMARK(ReadCellset)->Unit(benchmark::kMillisecond);

/// A line of /proc/self/status in kilobytes.
long Status(const std::string& name) {
  std::ifstream file("/proc/self/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(name)) return std::stol(line.substr(name.size() + 1));
  }
  return 0;
}

int MeasureMemory() {
  const long before = Status("VmRSS");
  AnswerRead read;
  std::size_t bytes = 0;
  MakeAnswer([&](std::string_view part) {
    bytes += part.size();
    read.Take(part);
  });
  read.Finish();
  malloc_trim(0);
  std::printf("answer %zu MB; cellset %ld MB; at most %ld MB\n", bytes >> 20,
              (Status("VmRSS") - before) >> 10, (Status("VmHWM") - before) >> 10);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]) == "memory") return MeasureMemory();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
