#include "ui/model/messages.h"

#include "texts/language.h"
#include "texts/text_numbers.h"
#include "ui/model/apply_language.h"
#include "ui/model/panel.h"

namespace vok {
namespace {

void AddRows(Panel panel, const Question& question) {
  const int columns = static_cast<int>(question.rows.front().size());
  const int width = 48 / columns;
  panel.Label({0, 0, columns}, "lblHeading", question.heading);
  int number = 0;
  for (const auto& row : question.rows) {
    for (int column = 0; column < columns; ++column, ++number) {
      Control& label = panel.Label({1 + number / columns, column}, {"lblRow", number}, 0);
      label.Caption = AsCaption(row[static_cast<std::size_t>(column)]);
      label.Width = width;
      label.Grows = true;
    }
  }
}

void AddAnswers(Panel panel, const std::vector<int>& answers) {
  int column = 0;
  for (const int text : answers) {
    Control& answer = panel.Button({0, column}, {"cmdAnswer", column}, text);
    if (column++ == 0) answer.Default = answer.Grows = answer.AtEnd = true;
  }
  panel.Button({0, column}, "cmdCancel", text_number::kCancel).Cancel = true;
}

}  // namespace

MessageAnswer ShowMessage(const WindowServices& services, const std::string& text,
                          const std::string& title, MessageIcon icon, MessageButtons buttons) {
  MessageBox box;
  box.text = text;
  box.title = title;
  box.icon = icon;
  box.buttons = buttons;
  return services.host.message_boxes.Show(box);
}

void OpenOrTell(const WindowServices& services, const std::string& path) {
  try {
    services.toolkit.OpenOnDesktop(path);
  } catch (const Failure& failure) {
    ShowMessage(services, failure.description(), services.host.component.product_name,
                MessageIcon::kExclamation);
  }
}

std::optional<std::size_t> Ask(const WindowServices& services, const Question& question) {
  Form form("frmQuestion", "");
  std::optional<std::size_t> chosen;
  Panel window(form);
  AddRows(window.Frame({0, 0}, "fraRows"), question);
  form.At("fraRows").Grows = true;
  AddAnswers(window.Foot(0, "fraButtons"), question.answers);
  form.On(FormEvent::kClicked, "cmdAnswer", [&](int answer) {
    chosen = static_cast<std::size_t>(answer);
    form.Visible = false;
  });
  form.On(FormEvent::kClicked, "cmdCancel", [&](int) { form.Visible = false; });
  LoadTexts(services.host, services.publics, form);
  form.Caption = GetLangString(services.publics.language, question.title);
  form.Focus = ControlId("cmdAnswer", 0);
  services.toolkit.ShowModal(form);
  return chosen;
}

}  // namespace vok
