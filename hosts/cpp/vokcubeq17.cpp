#include "vokcubeq17.h"

#include <iostream>
#include <mutex>
#include <utility>

#include "component/cl_me.h"
#include "component/publics.h"
#include "hosts/composition/query_window.h"
#include "hosts/composition/system_host.h"

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
};

Process& TheProcess() {
  static Process process;
  return process;
}

}  // namespace

std::string clMe::Version() const { return TheProcess().me.Version(); }

vok::Value clMe::ShowQCform(int32_t& Error, std::string& DataBaseFileName) {
  return TheProcess().me.ShowQCform(Error, DataBaseFileName);
}

vok::Value clMe::RunQuery(std::string& CubeSetName, std::string& PeriodsName,
                          std::string& OutputPath) {
  return TheProcess().me.RunQuery(CubeSetName, PeriodsName, OutputPath);
}

int32_t clMe::GetSetNames(vok::Value& sName, std::string& TableName) {
  return TheProcess().me.GetSetNames(sName, TableName);
}

vok::Value clMe::Qinfo() { return TheProcess().me.Qinfo(); }

void ShowMessagesWith(std::function<void(const std::string&, const std::string&)> show) {
  TheProcess().message_boxes.Use(std::move(show));
}

}  // namespace vokcubeq17
