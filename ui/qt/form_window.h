// A form on the screen: a window with its controls, which tells the form what the person does and
// draws it anew after each event.
//
// A field counts as left when the focus went to another one of the window, not when a message box
// or another program takes it, and before a button or menu that was reached otherwise is clicked.
// Where a rule then sends the person back, that click is dropped.
#pragma once

#include <QtCore/QEventLoop>
#include <QtWidgets/QDialog>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

#include "ui/model/form.h"
#include "ui/qt/control_view.h"
#include "ui/qt/form_menu.h"
#include "ui/qt/scrolled_body.h"

namespace vok::qt {

class FormWindow : public QDialog, private Listener {
 public:
  /// `form` outlives the window; `owner` is the window that waits for it, nullptr for none.
  FormWindow(Form& form, QWidget* owner);
  ~FormWindow() override;

  /// Shows the form until a rule or the person closes it. The first failure of a rule closes it,
  /// too, and leaves from here.
  void Run();
  /// Draws the form as it is now and moves the focus to where a rule wants it.
  void Refresh();

  /// Escape, or the window's own close button: the form's cancel button, where it has one.
  void reject() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Item {
    Control& control;
    std::unique_ptr<ControlView> view;
  };

  void AddViews();
  void LayOut();
  void SetTabOrder();
  void BindLabels();
  void Draw();
  void Draw(const Item& item);
  bool HasBeside() const;
  void FitScreen();
  void Remember() const;
  void Recall();
  void MoveFocus();
  void FocusFirst();
  static bool IsPassedOver(QObject* watched, QEvent& wheel);
  QWidget* WidgetOf(const ControlId& id) const;
  const Control* FocusedField() const;

  void Typed(const ControlId& id, const QString& text) override;
  void Chose(const ControlId& id, int position) override;
  void Clicked(const ControlId& id) override;
  const DateTexts& Dates() const override { return form_.Dates; }
  void Report(const std::function<void()>& event);
  /// Tells of the fields that were left. True when a rule sends the person back to one.
  bool ReportLeft();

  Form& form_;
  std::vector<Item> items_;
  FormMenu menu_;
  ScrolledBody* body_;
  std::deque<ControlId> left_;
  bool drawing_ = false;
  QEventLoop loop_;
  std::exception_ptr failure_;
};

}  // namespace vok::qt
