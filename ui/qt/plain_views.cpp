// What has a caption: label, check box, command button, frame; and the progress bar.
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyle>

#include "ui/qt/control_view.h"
#include "ui/qt/sized.h"

namespace vok::qt {
namespace {

/// Writes the caption only where it differs: each write lays the window out anew.
template <typename Widget>
void Write(Widget& widget, const QString& caption, void (Widget::*set)(const QString&),
           QString (Widget::*get)() const) {
  if ((widget.*get)() != caption) (widget.*set)(caption);
}

class Label : public ControlView {
 public:
  Label(const Control& control, QLabel& label) : ControlView(label), label_(label) {
    label.setTextFormat(Qt::PlainText);
    label.setWordWrap(control.Grows);
    label.setMinimumWidth(TextWidth(control, label));
    // with any letters in its text
    if (label.isRightToLeft()) {
      label.setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
    }
  }
  /// A label that leads to no control shows no access key; its text can be copied.
  void Draw(const Control& control) override {
    const bool leads = label_.buddy() != nullptr;
    if (!leads) label_.setTextInteractionFlags(Qt::TextSelectableByMouse);
    const QString text = Text(leads ? control.Caption : WithoutAccessMark(control.Caption));
    if (label_.text() != text) label_.setText(text);
  }

 private:
  QLabel& label_;
};

class CheckBox : public ControlView {
 public:
  CheckBox(const Control& control, QCheckBox& box, Listener& to) : ControlView(box), box_(box) {
    QObject::connect(&box, &QCheckBox::clicked, &box, [&to, id = control.Id()] { to.Clicked(id); });
  }
  /// Only a rule makes a box grey, so that clicks never come past that state.
  void Draw(const Control& control) override {
    Write<QAbstractButton>(box_, Text(control.Caption), &QAbstractButton::setText,
                           &QAbstractButton::text);
    box_.setTristate(control.Value == kGrayed);
    box_.setCheckState(control.Value == kUnchecked ? Qt::Unchecked
                       : control.Value == kGrayed  ? Qt::PartiallyChecked
                                                   : Qt::Checked);
  }

 private:
  QCheckBox& box_;
};

class Button : public ControlView {
 public:
  Button(const Control& control, QPushButton& button, Listener& to)
      : ControlView(button), button_(button) {
    button.setMinimumWidth(TextWidth(control, button));
    if (!control.Symbol.empty()) button.setFixedWidth(button.fontMetrics().height() * 2);
    if (control.Destructive) button.setIcon(button.style()->standardIcon(QStyle::SP_TrashIcon));
    // A person who gives up is not held by the field that the mouse would leave.
    if (control.Cancel) button.setFocusPolicy(Qt::TabFocus);
    QObject::connect(&button, &QPushButton::clicked, &button,
                     [&to, id = control.Id()] { to.Clicked(id); });
  }
  void Draw(const Control& control) override {
    const std::string& drawn = control.Symbol.empty() ? control.Caption : control.Symbol;
    Write<QAbstractButton>(button_, Text(drawn), &QAbstractButton::setText, &QAbstractButton::text);
    button_.setDefault(control.Default);
  }

 private:
  QPushButton& button_;
};

class GroupBox : public ControlView {
 public:
  explicit GroupBox(QGroupBox& box) : ControlView(box), box_(box) {}
  void Draw(const Control& control) override {
    const QString title = Text(control.Caption);
    if (box_.title() != title) box_.setTitle(title);
  }

 private:
  QGroupBox& box_;
};

class Unchanging : public ControlView {
 public:
  using ControlView::ControlView;
  void Draw(const Control&) override {}
};

}  // namespace

std::unique_ptr<ControlView> NewLabel(const Control& control, QWidget& parent) {
  return std::make_unique<Label>(control, *new QLabel(&parent));
}

std::unique_ptr<ControlView> NewCheckBox(const Control& control, QWidget& parent, Listener& to) {
  return std::make_unique<CheckBox>(control, *new QCheckBox(&parent), to);
}

std::unique_ptr<ControlView> NewButton(const Control& control, QWidget& parent, Listener& to) {
  return std::make_unique<Button>(control, *new QPushButton(&parent), to);
}

std::unique_ptr<ControlView> NewFrame(const Control& control, QWidget& parent) {
  if (control.Caption.empty()) return std::make_unique<Unchanging>(*new QWidget(&parent));
  return std::make_unique<GroupBox>(*new QGroupBox(&parent));
}

std::unique_ptr<ControlView> NewProgressBar(QWidget& parent) {
  auto* bar = new QProgressBar(&parent);
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  return std::make_unique<Unchanging>(*bar);
}

}  // namespace vok::qt
