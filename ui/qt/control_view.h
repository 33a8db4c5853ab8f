// One control on the screen. Widgets belong to the window that they stand in; views only know them.
#pragma once

#include <QtCore/QString>
#include <QtWidgets/QWidget>
#include <memory>

#include "ui/model/form.h"

namespace vok::qt {

inline QString Text(const std::string& utf8) { return QString::fromStdString(utf8); }

/// What the person did, for the form to hear.
class Listener {
 public:
  virtual ~Listener() = default;
  virtual void Typed(const ControlId& id, const QString& text) = 0;
  virtual void Chose(const ControlId& id, int position) = 0;
  virtual void Clicked(const ControlId& id) = 0;
  virtual const DateTexts& Dates() const = 0;
};

class ControlView {
 public:
  explicit ControlView(QWidget& widget) : widget_(widget) {}
  virtual ~ControlView() = default;
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;

  QWidget& widget() const { return widget_; }
  /// Shows what the control says now. Only what differs is written, so that neither the cursor nor
  /// a selection moves without need.
  virtual void Draw(const Control& control) = 0;

 private:
  QWidget& widget_;
};

/// A view of the control in the window `parent`. Menus have none.
std::unique_ptr<ControlView> NewView(const Control& control, QWidget& parent, Listener& listener);

// One for each kind of control.
std::unique_ptr<ControlView> NewTextBox(const Control& control, QWidget& parent, Listener& to);
std::unique_ptr<ControlView> NewComboBox(const Control& control, QWidget& parent, Listener& to);
std::unique_ptr<ControlView> NewListBox(const Control& control, QWidget& parent, Listener& to);
std::unique_ptr<ControlView> NewCheckBox(const Control& control, QWidget& parent, Listener& to);
std::unique_ptr<ControlView> NewButton(const Control& control, QWidget& parent, Listener& to);
std::unique_ptr<ControlView> NewLabel(const Control& control, QWidget& parent);
std::unique_ptr<ControlView> NewFrame(const Control& control, QWidget& parent);
std::unique_ptr<ControlView> NewTable(const Control& control, QWidget& parent);
std::unique_ptr<ControlView> NewProgressBar(QWidget& parent);
std::unique_ptr<ControlView> NewChart(const Control& control, QWidget& parent);

}  // namespace vok::qt
