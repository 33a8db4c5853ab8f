#include "ui/qt/form_window.h"

#include <QtCore/QScopedValueRollback>
#include <QtGui/QFocusEvent>
#include <QtGui/QFontDatabase>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QStyle>
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

FormWindow::FormWindow(Form& form, QWidget* owner)
    : QDialog(owner), form_(form), body_(new ScrolledBody(*this)) {
  setFont(FontOf(form.Font));
  setLayoutDirection(form.RightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
  setWindowModality(Qt::ApplicationModal);
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setAttribute(Qt::WA_QuitOnClose, false);  // the host program goes on
  setSizeGripEnabled(true);
  AddViews();
  LayOut();
  BindLabels();
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
  FormLayout grids(*this, *body_);
  for (const Item& item : items_) grids.Place(item.control, item.view->widget());
  grids.Finish();
  if (QMenuBar* bar = menu_.Build(form_, *this, [this](const ControlId& id) { Clicked(id); })) {
    layout()->setMenuBar(bar);
  }
  SetTabOrder();
}

/// In the order of the form, the foot last.
void FormWindow::SetTabOrder() {
  QWidget* before = nullptr;
  for (const bool in_body : {true, false}) {
    for (const Item& item : items_) {
      QWidget& widget = item.view->widget();
      if (body_->isAncestorOf(&widget) != in_body) continue;
      if (before != nullptr) setTabOrder(before, &widget);
      before = &widget;
    }
  }
}

/// A label's key leads to the first control that it names.
void FormWindow::BindLabels() {
  for (const Item& item : items_) {
    auto* label = qobject_cast<QLabel*>(WidgetOf(item.control.Label));
    if (label != nullptr && label->buddy() == nullptr) label->setBuddy(&item.view->widget());
  }
}

void FormWindow::Run() {
  form_.Visible = true;
  Refresh();
  if (focusWidget() == nullptr) FocusFirst();
  Recall();
  FitScreen();
  show();
  if (form_.Visible) loop_.exec();
  form_.Visible = false;
  Remember();
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
  const bool beside_before = !body_->beside().isHidden();
  body_->ShowBeside(HasBeside());
  if (!beside_before && HasBeside() && isVisible()) FitScreen();
}

bool FormWindow::HasBeside() const {
  return std::any_of(items_.begin(), items_.end(), [](const Item& item) {
    return item.control.Region == Region::kBeside && item.control.Visible;
  });
}

/// As large as it needs and the screen allows, and wholly on it. The desktop adds a title bar.
void FormWindow::FitScreen() {
  if (isMaximized()) return;
  const int title = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this);
  const QMargins frame = isVisible() ? windowHandle()->frameMargins() : QMargins(0, title, 0, 0);
  const QRect room = screen()->availableGeometry().marginsRemoved(frame);
  QSize needed = sizeHint();
  if (needed.height() > room.height()) {
    needed.rwidth() += style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  }
  QRect place(pos(), size().expandedTo(needed).boundedTo(room.size()));
  if (!testAttribute(Qt::WA_Moved) && !isVisible()) return resize(place.size());
  place.moveRight(std::min(place.right(), room.right()));
  place.moveBottom(std::min(place.bottom(), room.bottom()));
  place.moveTopLeft({std::max(place.left(), room.left()), std::max(place.top(), room.top())});
  setGeometry(place);
}

void FormWindow::Remember() const {
  if (!form_.Remembered) return;
  QSettings places = KeptForPerson();
  places.setValue(Text(form_.Name + "/place"), saveGeometry());
  places.setValue(Text(form_.Name + "/split"), body_->Split());
}

void FormWindow::Recall() {
  if (!form_.Remembered) return;
  const QSettings places = KeptForPerson();
  restoreGeometry(places.value(Text(form_.Name + "/place")).toByteArray());
  body_->SetSplit(places.value(Text(form_.Name + "/split")).toByteArray());
}

void FormWindow::Draw(const Item& item) {
  const Control& control = item.control;
  QWidget& widget = item.view->widget();
  item.view->Draw(control);
  const QString spoken = Text(SpokenName(form_, control));
  if (widget.accessibleName() != spoken) widget.setAccessibleName(spoken);
  widget.setEnabled(control.Enabled);
  widget.setVisible(control.Visible);
  widget.setToolTip(PlainToolTip(ShownToolTip(control)));
  MarkState(widget, control, form_.ErrorText);
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
  body_->Reveal(*widget);
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
  if (event->type() == QEvent::FocusIn) body_->Reveal(*static_cast<QWidget*>(watched));
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
