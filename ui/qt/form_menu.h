// The menu bar of a form's window.
#pragma once

#include <QtGui/QAction>
#include <QtWidgets/QMenuBar>
#include <functional>
#include <vector>

#include "ui/model/form.h"

namespace vok::qt {

class FormMenu {
 public:
  /// Adds the form's menus to `window`; nullptr for a form without any. `clicked` gets the entry.
  QMenuBar* Build(Form& form, QWidget& window,
                  const std::function<void(const ControlId&)>& clicked);
  void Draw();

 private:
  struct Entry {
    const Control& control;
    QAction* action;
  };
  QMenu* MenuOf(const std::string& name) const;

  std::vector<Entry> entries_;
};

}  // namespace vok::qt
