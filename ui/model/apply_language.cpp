#include "ui/model/apply_language.h"

#include <charconv>

#include "platform/failure.h"
#include "platform/text.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"

namespace vok {
namespace {

// Of the window's font. The string table has no texts of these numbers, so windows keep the font
// that they were designed with; a translated string table may name another.
constexpr int kFontName = 20;
constexpr int kFontSize = 21;

/// Runs one step; one that fails leaves its control as it is.
template <typename Step>
void Try(Step step) {
  try {
    step();
  } catch (const Failure&) {
    // The next step goes on.
  }
}

/// A text that is not there fails.
std::string OwnText(int number) {
  std::string text = StringTableText(number);
  if (text.empty()) {
    throw Failure(failure_number::kItemNotFound,
                  "The string table has no text " + std::to_string(number));
  }
  return text;
}

int WholeNumber(const std::string& text) { return Value(text).ToInt32(); }

/// The number that the text begins with; 0 for none.
int NumberValue(const std::string& text) {
  const auto trimmed = TrimBlanks(text);
  int number = 0;
  std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), number);
  return number;
}

class Translator {
 public:
  Translator(Language& language, Alignment alignment)
      : language_(language), alignment_(alignment) {}

  void Translate(Form& form) {
    Try([&] { form.Caption = OwnText(WholeNumber(form.Tag)); });
    Try([&] { form.Font.Name = OwnText(kFontName); });
    Try([&] { form.Font.Size = Value(OwnText(kFontSize)).ToDouble(); });
    form.ErrorText = GetLangString(language_, text_number::kError);
    for (Control& control : form.Controls()) {
      control.Font = form.Font;
      Translate(control);
    }
  }

 private:
  void Translate(Control& control) {
    const std::string_view type = TypeName(control.Type);
    if (type == "Label") {
      TranslateLabel(control);
    } else if (type == "Menu") {
      Try([&] { control.Caption = TextOf(control.Caption); });
    } else if (type == "TabStrip") {
      for (ControlItem& tab : control.Collection("Tabs")) {
        Try([&] { tab.Caption = TextOf(tab.Tag); });
        Try([&] { tab.ToolTipText = TextOf(tab.ToolTipText); });
      }
    } else if (type == "Toolbar") {
      for (ControlItem& button : control.Collection("Buttons")) {
        Try([&] { button.ToolTipText = TextOf(button.ToolTipText); });
      }
    } else if (type == "ListView") {
      for (ControlItem& header : control.Collection("ColumnHeaders")) {
        Try([&] { header.Text = TextOf(header.Tag); });
      }
    } else {
      Try([&] { TranslateProperty(control, "Caption", control.Tag); });
      Try([&] { TranslateProperty(control, "ToolTipText", control.ToolTipText); });
    }
  }

  void TranslateLabel(Control& label) {
    Try([&] { label.SetProperty("Caption", TextOf(label.Tag)); });
    if (alignment_ == Alignment::kKeep) return;
    // No label has a property of this name, so labels keep their alignment; a host's control that
    // has one is aligned by it.
    Try([&] { label.SetProperty("aligment", language_.IsRightToLeft() ? 0 : 1); });
  }

  void TranslateProperty(Control& control, std::string_view property, const std::string& number) {
    const int wanted = NumberValue(number);
    if (wanted > 0) control.SetProperty(property, GetLangString(language_, wanted));
  }

  std::string TextOf(const std::string& number) {
    return GetLangString(language_, WholeNumber(number));
  }

  Language& language_;
  Alignment alignment_;
};

}  // namespace

void LoadTexts(const Host& host, Publics& publics, Form& form) {
  Language& language = publics.language;
  if (!host.files.Exists(LanguageTableFile(host.component))) {
    return ApplyLanguage(language, form, Alignment::kKeep);
  }
  InitLanguage(host, publics.environment, language);
  OpenLanguageTable(host, language);
  form.RightToLeft = language.IsRightToLeft();
  ApplyLanguage(language, form, Alignment::kByLanguage);
}

void ApplyLanguage(Language& language, Form& form, Alignment alignment) {
  Translator(language, alignment).Translate(form);
}

}  // namespace vok
