#include "ui/qt/form_window.h"

#include <QtCore/QScopedValueRollback>
#include <QtGui/QFocusEvent>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <algorithm>

#include "ui/qt/application.h"
#include "ui/qt/form_layout.h"

namespace vok::qt {
namespace {

/// "txtDate1(0)", for those who look for it: tools that drive windows, tests.
QString NameOf(const Control& control) {
  const QString name = Text(control.Name);
  return control.Index == kNoIndex ? name : QStringLiteral("%1(%2)").arg(name).arg(control.Index);
}

}  // namespace

FormWindow::FormWindow(Form& form, QWidget* owner) : QDialog(owner), form_(form) {
  setFont(FontOf(form.Font));
  setLayoutDirection(form.RightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
  setWindowModality(Qt::ApplicationModal);
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setAttribute(Qt::WA_QuitOnClose, false);  // the host program goes on
  setSizeGripEnabled(true);
  AddViews();
  LayOut();
  NameFields();
}

FormWindow::~FormWindow() { form_.Visible = false; }

void FormWindow::AddViews() {
  for (Control& control : form_.Controls()) {
    if (control.Type == ControlType::kMenu) continue;
    items_.push_back({control, NewView(control, *this, *this)});
    QWidget& widget = items_.back().view->widget();
    widget.setObjectName(NameOf(control));
    widget.installEventFilter(this);
    if (!(control.Font == form_.Font)) widget.setFont(FontOf(control.Font));
  }
}

void FormWindow::LayOut() {
  FormLayout grids(*this);
  for (const Item& item : items_) grids.Place(item.control, item.view->widget());
  grids.Finish();
  if (QMenuBar* bar = menu_.Build(form_, *this, [this](const ControlId& id) { Clicked(id); })) {
    layout()->setMenuBar(bar);
  }
  for (std::size_t i = 1; i < items_.size(); ++i) {
    setTabOrder(&items_[i - 1].view->widget(), &items_[i].view->widget());
  }
}

/// A label's key leads to the first control that it names.
void FormWindow::NameFields() {
  for (const Item& item : items_) {
    item.view->widget().setAccessibleName(Text(SpokenName(form_, item.control)));
    auto* label = qobject_cast<QLabel*>(WidgetOf(item.control.Label));
    if (label != nullptr && label->buddy() == nullptr) label->setBuddy(&item.view->widget());
  }
}

void FormWindow::Run() {
  form_.Visible = true;
  Refresh();
  if (focusWidget() == nullptr) FocusFirst();
  show();
  if (form_.Visible) loop_.exec();
  form_.Visible = false;
  hide();
  if (parentWidget() != nullptr) parentWidget()->activateWindow();  // not every desktop does
  if (failure_ != nullptr) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void FormWindow::Refresh() {
  Draw();
  MoveFocus();
  if (!form_.Visible) loop_.quit();
}

void FormWindow::Draw() {
  const QScopedValueRollback drawing(drawing_, true);
  setWindowTitle(Text(form_.Caption));
  menu_.Draw();
  for (const Item& item : items_) Draw(item);
}

void FormWindow::Draw(const Item& item) {
  const Control& control = item.control;
  QWidget& widget = item.view->widget();
  item.view->Draw(control);
  widget.setEnabled(control.Enabled);
  widget.setVisible(control.Visible);
  widget.setToolTip(PlainToolTip(control.ToolTipText));
  MarkState(widget, control);
}

/// Moved by a rule, not by the person: what the focus goes away from has not been left.
void FormWindow::MoveFocus() {
  if (!form_.Focus) return;
  const ControlId id = *form_.Focus;
  form_.Focus.reset();
  QWidget* widget = WidgetOf(id);
  if (widget == nullptr) return;
  const QScopedValueRollback drawing(drawing_, true);
  if (auto* button = qobject_cast<QAbstractButton*>(focusWidget())) button->setDown(false);
  widget->setFocus(Qt::TabFocusReason);  // chooses the text, to be typed anew
}

void FormWindow::FocusFirst() {
  const QScopedValueRollback drawing(drawing_, true);
  for (const Item& item : items_) {
    QWidget& widget = item.view->widget();
    if ((widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isEnabled()) {
      return widget.setFocus(Qt::TabFocusReason);
    }
  }
}

QWidget* FormWindow::WidgetOf(const ControlId& id) const {
  const auto found = std::find_if(items_.begin(), items_.end(),
                                  [&](const Item& item) { return item.control.Id() == id; });
  return found == items_.end() ? nullptr : &found->view->widget();
}

/// The wheel chooses in a box that one works in, not in those that the mouse happens to pass.
bool FormWindow::IsPassedOver(QObject* watched, QEvent& wheel) {
  const auto* box = qobject_cast<QComboBox*>(watched);
  if (box == nullptr || box->hasFocus()) return false;
  wheel.ignore();
  return true;
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Wheel) return IsPassedOver(watched, *event);
  if (event->type() != QEvent::FocusOut || drawing_) return false;
  const auto reason = static_cast<QFocusEvent*>(event)->reason();
  if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
      reason == Qt::MenuBarFocusReason) {
    return false;
  }
  for (const Item& item : items_) {
    if (&item.view->widget() == watched) left_.push_back(item.control.Id());
  }
  // The rules may show a message box, for which the focus must have arrived.
  QMetaObject::invokeMethod(
      this, [this] { ReportLeft(); }, Qt::QueuedConnection);
  return false;
}

bool FormWindow::ReportLeft() {
  bool sent_back = false;
  while (!left_.empty()) {
    const ControlId id = left_.front();
    left_.pop_front();
    Report([&] {
      form_.Leave(id);
      sent_back = sent_back || form_.Focus.has_value();
    });
  }
  return sent_back;
}

void FormWindow::Typed(const ControlId& id, const QString& text) {
  if (drawing_) return;
  ReportLeft();
  Report([&] { form_.Type(id, text.toStdString()); });
}

void FormWindow::Chose(const ControlId& id, int position) {
  if (drawing_ || position < 0) return;
  ReportLeft();
  Report([&] { form_.Choose(id, position); });
}

void FormWindow::Clicked(const ControlId& id) {
  if (drawing_) return;
  if (form_.At(id).Cancel) return reject();
  const Control* field = FocusedField();
  if (field != nullptr && !(field->Id() == id)) left_.push_back(field->Id());
  const bool sent_back = ReportLeft();
  if (sent_back) return Refresh();
  Report([&] { form_.Click(id); });
}

const Control* FormWindow::FocusedField() const {
  const QWidget* focused = focusWidget();
  for (const Item& item : items_) {
    if (focused == &item.view->widget()) return &item.control;
  }
  return nullptr;
}

void FormWindow::reject() {
  left_.clear();
  const auto cancel = std::find_if(items_.begin(), items_.end(),
                                   [](const Item& item) { return item.control.Cancel; });
  Report([&] {
    if (cancel == items_.end()) {
      form_.Visible = false;
    } else {
      form_.Click(cancel->control.Id());
    }
  });
}

/// Failures must not pass through the toolkit's event loop.
void FormWindow::Report(const std::function<void()>& event) {
  if (!form_.Visible) return;
  try {
    event();
  } catch (...) {
    if (failure_ == nullptr) failure_ = std::current_exception();
    form_.Visible = false;
  }
  Refresh();
}

}  // namespace vok::qt
