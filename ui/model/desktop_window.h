// The main query window on a desktop that is its own.
#pragma once

#include <memory>
#include <string>

#include "ui/model/frm_periods.h"
#include "ui/model/toolkit.h"

namespace vok {

/// Its message boxes are the desktop's, not those of `host`. `host` and `publics` outlive
/// the window.
class DesktopWindow : public QueryWindow {
 public:
  DesktopWindow(std::unique_ptr<Desktop> desktop, const Host& host, Publics& publics)
      : desktop_(std::move(desktop)),
        host_{host.component, host.files,    host.registry, host.locale,     host.clock,
              *desktop_,      host.database, host.cube,     host.spreadsheet},
        window_(host_, publics, *desktop_) {}

  Value Initialize(std::string& DataBaseFileName) override {
    return window_.Initialize(DataBaseFileName);
  }
  void Show() override { window_.Show(); }

 private:
  std::unique_ptr<Desktop> desktop_;
  Host host_;
  FrmPeriods window_;
};

}  // namespace vok
