// What one types into or chooses from: text box, combo box, list box.
#include <QtGui/QPainter>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionFrame>

#include "ui/qt/control_view.h"
#include "ui/qt/date_edit.h"
#include "ui/qt/sized.h"

namespace vok::qt {
namespace {

QStringList Entries(const Control& control) {
  QStringList entries;
  for (const std::string& entry : control.List) entries.append(Text(entry));
  return entries;
}

/// The cursor stays where it was, as far as the text reaches.
void Write(QLineEdit& edit, const QString& text) {
  if (edit.text() == text) return;
  const int cursor = edit.hasFocus() ? edit.cursorPosition() : 0;
  edit.setText(text);
  edit.setCursorPosition(cursor);
}

/// A text of any letters begins where the window's lines begin.
void BeginAtStart(QLineEdit& edit) {
  if (edit.isRightToLeft()) edit.setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
}

/// Without the focus a path that is too long is drawn with its beginning and its end.
class PathEdit : public Sized<QLineEdit> {
 public:
  using Sized<QLineEdit>::Sized;

 protected:
  void paintEvent(QPaintEvent* event) override {
    QStyleOptionFrame frame;
    initStyleOption(&frame);
    constexpr int kAroundText = 3;  // as the style draws it
    const QRect room = style()
                           ->subElementRect(QStyle::SE_LineEditContents, &frame, this)
                           .adjusted(kAroundText, 0, -kAroundText, 0);
    if (hasFocus() || fontMetrics().horizontalAdvance(text()) <= room.width()) {
      return QLineEdit::paintEvent(event);
    }
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &frame, &painter, this);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(room, Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, room.width()));
  }
};

class TextBox : public ControlView {
 public:
  TextBox(const Control& control, QLineEdit& edit, Listener& to) : ControlView(edit), edit_(edit) {
    BeginAtStart(edit);
    if (control.Width > 0) {
      const QMargins frame = edit.textMargins() + edit.contentsMargins();
      constexpr int kInside = 12;  // what styles keep free around the text
      edit.setMinimumWidth(TextWidth(control, edit) + frame.left() + frame.right() + kInside);
    }
    QObject::connect(&edit, &QLineEdit::textEdited, &edit,
                     [&to, id = control.Id()](const QString& text) { to.Typed(id, text); });
  }
  /// The Tab key does not stop at a locked text, but can be clicked or reached by its label's key.
  void Draw(const Control& control) override {
    edit_.setReadOnly(control.Locked);
    edit_.setFocusPolicy(control.Locked ? Qt::ClickFocus : Qt::StrongFocus);
    Write(edit_, Text(control.Text));
  }

 private:
  QLineEdit& edit_;
};

QLineEdit* NewEdit(const Control& control, QWidget& parent, Listener& to) {
  if (control.Path) return new PathEdit(&parent);
  if (!control.IsDate) return new Sized<QLineEdit>(&parent);
  const auto picked = [&to, id = control.Id()](const QString& text) { to.Typed(id, text); };
  return new DateEdit(parent, to.Dates(), picked);
}

class ComboBox : public ControlView {
 public:
  ComboBox(const Control& control, QComboBox& box, Listener& to) : ControlView(box), box_(box) {
    box.setEditable(!control.Locked);
    box.setFocusPolicy(Qt::StrongFocus);
    box.setInsertPolicy(QComboBox::NoInsert);
    box.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box.setMinimumContentsLength(TextWidth(control, box) /
                                 box.fontMetrics().horizontalAdvance(QLatin1Char('X')));
    QObject::connect(&box, &QComboBox::activated, &box,
                     [&to, id = control.Id()](int position) { to.Chose(id, position); });
    if (!control.Locked) Free(*box.lineEdit(), control.Id(), to);
  }
  void Draw(const Control& control) override {
    const QString text = Text(control.Text);
    if (drawn_ != control.List) {
      box_.clear();
      box_.addItems(Entries(control));
      drawn_ = control.List;
    }
    const int chosen =
        box_.isEditable() || control.ListIndex >= 0 ? control.ListIndex : box_.findText(text);
    if (box_.currentIndex() != chosen) box_.setCurrentIndex(chosen);
    if (box_.isEditable()) Write(*box_.lineEdit(), text);
  }

 private:
  /// What is typed is neither completed nor taken for a choice when it happens to be an entry: it
  /// may be the beginning of a new name.
  void Free(QLineEdit& edit, const ControlId& id, Listener& to) {
    BeginAtStart(edit);
    box_.setCompleter(nullptr);
    QObject::disconnect(&edit, &QLineEdit::editingFinished, &box_, nullptr);
    QObject::disconnect(&edit, &QLineEdit::returnPressed, &box_, nullptr);
    QObject::connect(&edit, &QLineEdit::textEdited, &edit,
                     [&to, id](const QString& text) { to.Typed(id, text); });
  }

  QComboBox& box_;
  std::vector<std::string> drawn_;
};

class ListBox : public ControlView {
 public:
  ListBox(const Control& control, Sized<QListWidget>& list, Listener& to)
      : ControlView(list), list_(list) {
    const int frame = 2 * list.frameWidth();
    constexpr int kAroundEntry = 4;
    list.setMinimumSize(
        TextWidth(control, list) + frame + 2 * kAroundEntry,
        TextHeight(control, list) + control.Height * kAroundEntry + frame + kAroundEntry);
    QObject::connect(&list, &QListWidget::currentRowChanged, &list,
                     [&to, id = control.Id()](int position) { to.Chose(id, position); });
  }
  void Draw(const Control& control) override {
    if (drawn_ != control.List) {
      list_.clear();
      list_.addItems(Entries(control));
      drawn_ = control.List;
    }
    if (list_.currentRow() != control.ListIndex) list_.setCurrentRow(control.ListIndex);
  }

 private:
  QListWidget& list_;
  std::vector<std::string> drawn_;
};

}  // namespace

std::unique_ptr<ControlView> NewTextBox(const Control& control, QWidget& parent, Listener& to) {
  return std::make_unique<TextBox>(control, *NewEdit(control, parent, to), to);
}

std::unique_ptr<ControlView> NewComboBox(const Control& control, QWidget& parent, Listener& to) {
  return std::make_unique<ComboBox>(control, *new QComboBox(&parent), to);
}

std::unique_ptr<ControlView> NewListBox(const Control& control, QWidget& parent, Listener& to) {
  return std::make_unique<ListBox>(control, *new Sized<QListWidget>(&parent), to);
}

}  // namespace vok::qt
