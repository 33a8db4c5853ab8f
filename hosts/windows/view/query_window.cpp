#include "hosts/windows/view/query_window.h"

#include "hosts/windows/view/win32_toolkit.h"
#include "ui/frm_periods.h"

namespace vok::windows {
namespace {

class ShownQueryWindow : public QueryWindow {
 public:
  ShownQueryWindow(const Host& host, Publics& publics) : form_(host, publics, toolkit_) {}
  Value Initialize(std::string& DataBaseFileName) override {
    return form_.Initialize(DataBaseFileName);
  }
  void Show() override { form_.Show(); }

 private:
  Win32Toolkit toolkit_;
  FrmPeriods form_;
};

}  // namespace

std::unique_ptr<QueryWindow> MakeQueryWindow(const Host& host, Publics& publics) {
  return std::make_unique<ShownQueryWindow>(host, publics);
}

}  // namespace vok::windows
