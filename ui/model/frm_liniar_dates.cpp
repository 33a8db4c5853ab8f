#include "ui/model/frm_liniar_dates.h"

#include <charconv>
#include <cmath>

#include "platform/text.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"
#include "ui/model/apply_language.h"
#include "ui/model/messages.h"
#include "ui/model/panel.h"

namespace vok {
namespace {

constexpr char kConfirmed[] = "1";
constexpr int kIntervalWidth = 16;
constexpr int kDateWidth = 12;

/// The value of a text that is a number as a whole.
std::optional<double> NumberIn(const std::string& text) {
  const std::string_view digits = TrimBlanks(text);
  double value = 0;
  const char* end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, value);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return value;
}

}  // namespace

frmLiniarDates::frmLiniarDates(const WindowServices& services)
    : services_(services),
      form_("frmLiniarDates", std::to_string(text_number::kLinearDatesWindow)) {
  AddControls();
  form_.On(FormEvent::kChanged, "txtDate", [this](int index) { DateChanged(index); });
  form_.On(FormEvent::kChanged, "txtP1", [this](int) { PeriodChanged("txtP1", run_.first); });
  form_.On(FormEvent::kChanged, "txtP2", [this](int) { PeriodChanged("txtP2", run_.last); });
  form_.On(FormEvent::kClicked, "cmdOk", [this](int) { Ok(); });
  form_.On(FormEvent::kClicked, "cmdCancel", [this](int) { form_.Visible = false; });
}

void frmLiniarDates::AddControls() {
  using enum ControlType;
  Panel window(form_);
  Panel fields = window.Frame({0, 0}, "fraFields");
  form_.At("fraFields").Grows = true;
  fields.Label({0, 0}, "lblInterval", text_number::kInterval);
  Control& interval =
      fields.Field({1, 0, 1, 4}, kListBox, "lstInterval", "lblInterval", kIntervalWidth);
  interval.Height = 4;
  interval.Grows = true;
  const auto row = [&fields](int grid_row, const char* label, int text, const ControlId& field,
                             int width) -> Control& {
    fields.Label({grid_row, 1}, label, text);
    return fields.Field({grid_row, 2}, kTextBox, field, label, width);
  };
  const Locale& locale = services_.host.locale;
  HoldDate(form_, row(1, "lblAnchor", text_number::kAnchorDate, {"txtDate", 0}, kDateWidth),
           locale);
  HoldDate(form_, row(2, "lblEnd", text_number::kEndDate, {"txtDate", 1}, kDateWidth), locale);
  row(3, "lblP1", text_number::kFirstPeriod, "txtP1", kDateWidth);
  row(4, "lblP2", text_number::kLastPeriod, "txtP2", kDateWidth);
  window.OkAndCancel();
  form_.SetList("lstInterval",
                {StringTableText(text_number::kMonth), StringTableText(text_number::kQuarter),
                 StringTableText(text_number::kHalfYear), StringTableText(text_number::kYear)});
  form_.Choose("lstInterval", kMonths);
}

void frmLiniarDates::DateChanged(int index) {
  const Locale& locale = services_.host.locale;
  Date& date = index == 0 ? run_.anchor : run_.end;
  const auto typed = locale.ParseDate(form_.Text({"txtDate", index}));
  date = typed ? ThroughShortDate(locale, *typed) : Date{};
}

void frmLiniarDates::PeriodChanged(const char* field, int16_t& number) {
  number = 0;
  if (form_.Text(field).empty()) return;
  const auto value = NumberIn(form_.Text(field));
  if (value && *value > 0 && *value < kPeriodCount + 1) {
    number = static_cast<int16_t>(std::nearbyint(*value));
  } else {
    form_.SetText(field, "");
  }
}

void frmLiniarDates::Ok() {
  form_.Tag = kConfirmed;
  form_.Visible = false;
  run_.interval = form_.At("lstInterval").ListIndex;
  run_.today = services_.host.clock.Now();
  RunReported(services_, {.FunctionName = "cmdOk_Click", .ModuleName = "frmLiniarDates"},
              [this] { FillLinearDates(run_, services_.host.locale, FromDateArr, UntilDateArr); });
}

bool frmLiniarDates::ShowForm() {
  LoadTexts(services_.host, services_.publics, form_);
  services_.toolkit.ShowModal(form_);
  return NumberIn(form_.Tag) == 1.0;
}

}  // namespace vok
