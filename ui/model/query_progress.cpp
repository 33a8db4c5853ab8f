#include "ui/model/query_progress.h"

#include <utility>
#include <vector>

#include "component/cl_me.h"
#include "texts/language.h"
#include "texts/text_numbers.h"

namespace vok {
namespace {

constexpr char kProgressFrame[] = "fraProgress";
constexpr char kLabel[] = "lblProgress";
constexpr char kStop[] = "cmdStop";

/// The window shows by itself what a run has to say, when it is over.
class NoBoxes : public MessageBoxes {
 public:
  MessageAnswer Show(const MessageBox&) override { return MessageAnswer::kOk; }
};

bool IsUsed(const Control& control) {
  return control.Type != ControlType::kLabel && control.Type != ControlType::kFrame;
}

}  // namespace

/// While it lives the query can be stopped, and the rest of the window stands still.
class QueryProgress::Running {
 public:
  explicit Running(QueryProgress& progress) : progress_(progress), form_(progress.form_) {
    Publics& publics = progress_.services_.publics;
    publics.stop = &progress_.stop_.emplace();
    publics.keep_old_workbook = true;
    for (Control& control : form_.Controls()) {
      if (control.Container == kProgressFrame || !IsUsed(control)) continue;
      before_.push_back({control, control.Enabled, control.Cancel});
      control.Enabled = control.Cancel = false;
    }
    ShowFrame(true);
    form_.Focus = ControlId(kStop);
  }
  ~Running() {
    progress_.services_.publics.stop = nullptr;
    progress_.services_.publics.keep_old_workbook = before_keep_;
    progress_.stop_.reset();
    ShowFrame(false);
    for (const auto& [control, enabled, cancel] : before_) {
      control.Enabled = enabled;
      control.Cancel = cancel;
    }
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  struct Before {
    Control& control;
    bool enabled;
    bool cancel;
  };

  void ShowFrame(bool visible) {
    form_.At(kProgressFrame).Visible = visible;
    Control& stop = form_.At(kStop);
    stop.Enabled = stop.Cancel = visible;
  }

  QueryProgress& progress_;
  Form& form_;
  std::vector<Before> before_;
  bool before_keep_ = progress_.services_.publics.keep_old_workbook;
};

QueryProgress::QueryProgress(const WindowServices& services, Form& form)
    : services_(services), form_(form) {
  form_.On(FormEvent::kClicked, kStop, [this](int) { Stop(); });
}

void QueryProgress::AddTo(Panel frame) {
  constexpr int kBarWidth = 20;
  form_.At(kProgressFrame).Visible = false;
  frame.Label({0, 0}, kLabel, text_number::kRunning);
  frame.Field({0, 1}, ControlType::kProgressBar, "prgQuery", kLabel, kBarWidth).Grows = true;
  frame.Button({0, 2}, kStop, text_number::kStop).Enabled = false;
}

Value QueryProgress::Run(std::string source, std::string periods, std::string output) {
  Value result;
  form_.At(kLabel).Caption = GetLangString(services_.publics.language, text_number::kRunning);
  const Running running(*this);
  const Host& host = services_.host;
  NoBoxes none;
  const Host silent{host.component, host.files,    host.registry, host.locale,     host.clock,
                    none,           host.database, host.cube,     host.spreadsheet};
  services_.toolkit.RunBeside(
      [&] { result = clMe(silent, services_.publics).RunQuery(source, periods, output); });
  return result;
}

void QueryProgress::Stop() {
  if (!stop_) return;
  stop_->Ask();
  form_.At(kStop).Enabled = false;
  form_.At(kLabel).Caption = GetLangString(services_.publics.language, text_number::kStopping);
}

}  // namespace vok
