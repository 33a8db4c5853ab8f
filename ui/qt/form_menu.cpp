#include "ui/qt/form_menu.h"

#include <QtWidgets/QMenu>
#include <algorithm>

#include "ui/qt/control_view.h"

namespace vok::qt {
namespace {

bool HasEntries(const Form& form, const Control& menu) {
  return std::any_of(form.Controls().begin(), form.Controls().end(), [&](const Control& control) {
    return control.Type == ControlType::kMenu && control.Container == menu.Name;
  });
}

}  // namespace

QMenuBar* FormMenu::Build(Form& form, QWidget& window,
                          const std::function<void(const ControlId&)>& clicked) {
  QMenuBar* bar = nullptr;
  for (const Control& control : form.Controls()) {
    if (control.Type != ControlType::kMenu) continue;
    if (bar == nullptr) bar = new QMenuBar(&window);
    QAction* action = nullptr;
    QMenu* menu = MenuOf(control.Container);
    if (HasEntries(form, control)) {
      action = (menu != nullptr ? menu->addMenu(QString()) : bar->addMenu(QString()))->menuAction();
    } else {
      action = menu != nullptr ? menu->addAction(QString()) : bar->addAction(QString());
      action->setShortcut(QKeySequence(Text(control.Shortcut), QKeySequence::PortableText));
      QObject::connect(action, &QAction::triggered, &window,
                       [clicked, id = control.Id()] { clicked(id); });
    }
    action->setObjectName(Text(control.Name));
    entries_.push_back({control, action});
  }
  return bar;
}

void FormMenu::Draw() {
  for (const auto& [control, action] : entries_) {
    action->setText(Text(control.Caption));
    action->setEnabled(control.Enabled);
    action->setVisible(control.Visible);
  }
}

QMenu* FormMenu::MenuOf(const std::string& name) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return entry.control.Name == name; });
  return found == entries_.end() ? nullptr : found->action->menu<QMenu*>();
}

}  // namespace vok::qt
