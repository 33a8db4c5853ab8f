#include "vokcubeq17.h"

#include <iostream>
#include <mutex>
#include <utility>

#include "component/cl_me.h"
#include "component/publics.h"
#include "hosts/composition/query_window.h"
#include "hosts/composition/system_host.h"
#include "platform/whole_path.h"

namespace vokcubeq17 {
namespace {

using Handler = std::function<void(const std::string&, const std::string&)>;

void Print(const std::string& title, const std::string& text) {
  std::cerr << title << ": " << text << '\n';
}

/// The host program's handler, or else standard error.
class HandlerMessageBoxes : public vok::MessageBoxes {
 public:
  vok::MessageAnswer Show(const vok::MessageBox& box) override {
    Current()(box.title, box.text);
    return vok::MessageAnswer::kOk;
  }
  void Use(Handler handler) {
    const std::lock_guard lock(mutex_);
    handler_ = handler ? std::move(handler) : Print;
  }

 private:
  Handler Current() {
    const std::lock_guard lock(mutex_);
    return handler_;
  }

  std::mutex mutex_;
  Handler handler_ = Print;
};

struct Process {
  HandlerMessageBoxes message_boxes;
  vok::SystemHost host{{.message_boxes = &message_boxes}};
  vok::Publics publics;
  vok::CallTurns turns;
  vok::clMe me{host.host(), publics, vok::OpenQueryWindow, &turns};
  vok::clMe of_turn{host.host(), publics, vok::OpenQueryWindow};  ///< for who has the turn
};

Process& TheProcess() {
  static Process process;
  return process;
}

RunReport ReportOf(const vok::RunReport& run) {
  return {run.code, run.cause, run.workbook, run.rows, run.stopped, run.total};
}

}  // namespace

struct clMe::Own {
  vok::Value Run(std::string& data_source, std::string& periods, std::string& output);

  RunReport last;
  std::function<void(const std::string&, double)> show;
  std::mutex mutex;
  std::shared_ptr<vok::QueryStop> stop;  ///< of the run that it is in
};

vok::Value clMe::Own::Run(std::string& data_source, std::string& periods, std::string& output) {
  const auto own_stop = std::make_shared<vok::QueryStop>();
  const auto publish = [this](const std::shared_ptr<vok::QueryStop>& run) {
    const std::lock_guard lock(mutex);
    stop = run;
  };
  publish(own_stop);
  Process& process = TheProcess();
  try {
    const vok::CallTurn turn(&process.turns);
    process.publics.stop = own_stop.get();
    if (show) process.publics.on_step = [this](const auto& step) { show(step.name, step.begin); };
    vok::Value result = process.of_turn.RunQuery(data_source, periods, output);
    process.publics.stop = nullptr;
    process.publics.on_step = {};
    last = ReportOf(process.publics.last_run);
    publish(nullptr);
    if (show) show("", 1);
    return result;
  } catch (...) {  // no turn
    publish(nullptr);
    const vok::Failure failure = vok::CurrentFailure();
    last = {.code = failure.number(), .cause = failure.description(), .workbook = {}};
    return vok::Value::Array{failure.number(), failure.description()};
  }
}

clMe::clMe() : own_(std::make_shared<Own>()) {}

const RunReport& clMe::LastRun() const { return own_->last; }

void clMe::Stop() const {
  const std::lock_guard lock(own_->mutex);
  if (own_->stop != nullptr) own_->stop->Ask();
}

void clMe::ShowProgressWith(std::function<void(const std::string&, double)> show) {
  own_->show = std::move(show);
}

std::string clMe::Version() const { return TheProcess().me.Version(); }

vok::Value clMe::ShowQCform(int32_t& Error, std::string& DataBaseFileName) {
  return TheProcess().me.ShowQCform(Error, DataBaseFileName);
}

vok::Value clMe::RunQuery(std::string& CubeSetName, std::string& PeriodsName,
                          std::string& OutputPath) {
  return own_->Run(CubeSetName, PeriodsName, OutputPath);
}

int32_t clMe::GetSetNames(vok::Value& sName, std::string& TableName) {
  return TheProcess().me.GetSetNames(sName, TableName);
}

vok::Value clMe::Qinfo() { return TheProcess().me.Qinfo(); }

void UseSettingsFolder(const std::string& folder) {
  Process& process = TheProcess();
  const vok::CallTurn turn(&process.turns);
  process.host.UseSettingsFolder(folder.empty() ? "" : vok::WholePath(folder));
  process.publics.environment.SettingsFolder.clear();  // to be found again
}

void ShowMessagesWith(std::function<void(const std::string&, const std::string&)> show) {
  TheProcess().message_boxes.Use(std::move(show));
}

}  // namespace vokcubeq17
