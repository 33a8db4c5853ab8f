// A host program: the installed header and the shared library, nothing else of the system. Calls
// every member of the class once and more, on one thread and on many, and ends with the number of
// surprises.
#include <vokcubeq17.h>

#include <atomic>
#include <fstream>
#include <iostream>
#include <iterator>
#include <thread>
#include <vector>

namespace {

std::atomic<int> surprises = 0;

void Expect(bool as_expected, const std::string& what) {
  if (as_expected) return;
  std::cerr << "FAILED: " << what << '\n';
  ++surprises;
}

const vok::Value::Array& Parts(const vok::Value& value) {
  static const vok::Value::Array none;
  const auto* parts = value.As<vok::Value::Array>();
  return parts == nullptr ? none : *parts;
}

vok::Value Run(vokcubeq17::clMe& me, std::string source, std::string periods, std::string output) {
  return me.RunQuery(source, periods, output);
}

void TryLists(vokcubeq17::clMe& me) {
  const vok::Value sources = vok::Value::Array{"Domestic", "Export"};
  const vok::Value info = me.Qinfo();
  Expect(Parts(info).size() == 4 && Parts(info)[1] == sources, "Qinfo");
  vok::Value names;
  std::string table = "DataSourceInfo";
  Expect(me.GetSetNames(names, table) == 0 && names == sources, "GetSetNames");
}

/// There is no screen here.
void TryWindow(vokcubeq17::clMe& me) {
  int32_t error = 0;
  std::string database = "host.mdb";
  const vok::Value shown = me.ShowQCform(error, database);
  Expect(error == vok::failure_number::kNotSupported && Parts(shown).size() == 1, "ShowQCform");
}

/// A message's handler calls again: the call that shows the message would have to end first.
void TryCallsInsideACall(vokcubeq17::clMe& me, const std::string& output) {
  constexpr int32_t kOwnCallInProgress = 6666;
  bool told = false;
  vokcubeq17::ShowMessagesWith([&](const std::string&, const std::string&) {
    told = true;
    const auto run = Run(me, "Domestic", "Demo", output);
    Expect(Parts(run).size() == 2 && Parts(run)[0] == vok::Value(kOwnCallInProgress) &&
               Parts(run)[1].ToText().find("in progress") != std::string::npos,
           "RunQuery inside a call");
    Expect(me.Qinfo().IsEmpty(), "Qinfo inside a call");
    std::string text = "Periods";
    vok::Value names;
    try {
      me.GetSetNames(names, text);
      Expect(false, "GetSetNames inside a call threw nothing");
    } catch (const vok::Failure& failure) {
      Expect(failure.number() == kOwnCallInProgress, failure.what());
    }
  });
  Expect(Run(me, "Nothing", "Demo", output) ==
             vok::Value(vok::Value::Array{int16_t{2222}, "Cann't read Settings"}),
         "RunQuery of a set that is not there");
  vokcubeq17::ShowMessagesWith({});
  Expect(told, "ShowMessagesWith: no message came");
  Expect(me.LastRun().code == 2222 && me.LastRun().rows == 0 &&
             me.LastRun().cause == "Datasource Definition: Nothing  Not Found!!",
         "LastRun of a failure: " + me.LastRun().cause);
}

/// Progress is told, and another thread stops the run.
void TryStops(const std::string& output) {
  vokcubeq17::clMe me;
  std::string steps;
  double done = -1;
  me.ShowProgressWith([&](const std::string& step, double before) {
    Expect(before > done && before <= 1, "progress goes on");
    steps += step + ' ';
    done = before;
  });
  Run(me, "Domestic", "Demo", output);
  Expect(steps == "settings cube query workbook query workbook  " && done == 1, "steps " + steps);
  const vokcubeq17::RunReport whole = me.LastRun();
  Expect(whole.code == 0 && whole.rows > 0 && whole.workbook == output + ".xlsX", "LastRun");
  me.ShowProgressWith([&](const std::string& step, double) {
    if (step == "query") std::thread([&me] { me.Stop(); }).join();
  });
  Run(me, "Domestic", "Demo", output);
  Expect(me.LastRun().stopped && me.LastRun().workbook.empty(), "a run that is stopped");
}

/// Settings are where the program says, until it leaves that to the registry again.
void TryFolders(vokcubeq17::clMe& me, const std::string& output) {
  vokcubeq17::UseSettingsFolder("nowhere");
  Run(me, "Domestic", "Demo", output);
  Expect(me.LastRun().code == 1111 &&
             me.LastRun().cause.find("/nowhere/CubToQel.mdb\"") != std::string::npos,
         "UseSettingsFolder: " + me.LastRun().cause);
  vokcubeq17::UseSettingsFolder("");
  TryLists(me);
}

/// What the installed headers declare is there to be linked.
void TryFailures() {
  try {
    throw std::bad_alloc();
  } catch (...) {
    Expect(vok::CurrentFailure().number() == vok::failure_number::kOutOfMemory, "CurrentFailure");
  }
}

std::string Bytes(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Every run leaves its own workbook and gives its own setting, with any other run beside it.
void TryManyThreads(const std::string& output) {
  constexpr int kThreads = 8, kRuns = 10;
  const std::string sources[] = {"Domestic", "Export"};
  vokcubeq17::clMe alone;
  for (const std::string& source : sources) {
    const vok::Value result = Run(alone, source, "Demo", output + source);
    const auto* names = Parts(result).at(0).As<vok::Value::TextArray>();
    Expect(names != nullptr && names->size() == 13 && names->at(1) == "Jan 2024", "the names");
  }
  const std::string wanted[] = {Bytes(output + "Domestic.xlsX"), Bytes(output + "Export.xlsX")};
  Expect(!wanted[0].empty() && wanted[0] != wanted[1], "the workbooks of one thread");
  std::atomic<int> right = 0;
  const auto run = [&](int number) {
    const std::string& source = sources[number % 2];
    const std::string own = output + std::to_string(number);
    for (int i = 0; i < kRuns; ++i) {
      vokcubeq17::clMe me;
      const vok::Value result = Run(me, source, "Demo", own);
      const auto& parts = Parts(result);
      right += parts.size() == 5 && parts[3] == vok::Value(source) &&
               Bytes(own + ".xlsX") == wanted[number % 2];
      Expect(Parts(me.Qinfo()).size() == 4, "the lists of many threads");
    }
  };
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) threads.emplace_back(run, number);
  for (std::thread& thread : threads) thread.join();
  Expect(right == kThreads * kRuns, "of " + std::to_string(kThreads * kRuns) + " runs beside " +
                                        "others, right: " + std::to_string(right));
}

}  // namespace

int main(int, char** arguments) {
  vokcubeq17::clMe me;
  Expect(me.Version() == arguments[1], "Version " + me.Version());
  TryLists(me);
  TryWindow(me);
  TryCallsInsideACall(me, std::string(arguments[2]) + "-inside");
  TryStops(std::string(arguments[2]) + "-stops");
  TryFolders(me, arguments[2]);
  TryFailures();
  TryManyThreads(arguments[2]);
  return surprises;
}
