// A host program with many single-threaded apartments, each with its own object, data source and
// output. Every run must leave its own workbook, and a timer's call that comes while a thread waits
// for its turn must be refused.
//
//   many_apartments OUTPUT SOURCE WORKBOOK SOURCE WORKBOOK    the workbooks as they must become
#include <atomic>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "hosts/com/interface.h"
#include "system/automation/apartment.h"
#include "system/automation/com_ptr.h"
#include "system/automation/variant.h"

namespace vok::windows {
namespace {

constexpr int kThreads = 8, kRuns = 10;
constexpr int32_t kOwnCallInProgress = 6666;

std::atomic<int> right{0}, refused{0}, let_in{0};

std::string Bytes(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Value::Array Run(_clMe& me, const std::string& source, const std::string& output) {
  Variant data_source{Value(source)}, periods{Value("Demo")}, path{Value(output)}, result;
  const HRESULT code = me.RunQuery(&data_source.Get()->bstrVal, &periods.Get()->bstrVal,
                                   &path.Get()->bstrVal, result.Get());
  if (FAILED(code)) return {};
  return *FromVariant(*result.Get()).As<Value::Array>();
}

thread_local _clMe* object_of_thread = nullptr;

void CALLBACK CallInsideACall(HWND, UINT, UINT_PTR, DWORD) {
  const auto parts = Run(*object_of_thread, "Domestic", "nowhere");
  const bool is_refusal =
      parts.size() == 2 && parts[0] == Value(kOwnCallInProgress) && parts[1] != Value("");
  ++(is_refusal ? refused : let_in);
}

struct Work {
  std::string source, output, wanted;
};

void RunOften(const Work& work) {
  const Apartment apartment;
  ComPtr<_clMe> me;
  if (FAILED(CoCreateInstance(kClassId, nullptr, CLSCTX_INPROC_SERVER, kInterfaceId,
                              me.ReceiveVoid())))
    return;
  object_of_thread = me.Get();
  const UINT_PTR timer = SetTimer(nullptr, 0, 10, CallInsideACall);
  for (int i = 0; i < kRuns; ++i) {
    const auto parts = Run(*me.Get(), work.source, work.output);
    right += parts.size() == 5 && parts[3] == Value(work.source) &&
             Bytes(work.output + ".xlsX") == work.wanted;
  }
  KillTimer(nullptr, timer);
}

int RunAll(const std::string& output, const std::vector<Work>& kinds) {
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    Work work = kinds[static_cast<std::size_t>(number) % kinds.size()];
    work.output = output + std::to_string(number);
    threads.emplace_back(RunOften, work);
  }
  for (std::thread& thread : threads) thread.join();
  std::cout << right << " of " << kThreads * kRuns << " runs right, " << refused
            << " calls inside a call refused, " << let_in << " let in\n";
  return right == kThreads * kRuns && refused > 0 && let_in == 0 ? 0 : 1;
}

}  // namespace
}  // namespace vok::windows

int main(int, char** arguments) {
  // Wine locks up when several threads are the first to ask for its screen.
  ReleaseDC(nullptr, GetDC(nullptr));
  using vok::windows::Bytes;
  return vok::windows::RunAll(arguments[1], {{arguments[2], "", Bytes(arguments[3])},
                                             {arguments[4], "", Bytes(arguments[5])}});
}
