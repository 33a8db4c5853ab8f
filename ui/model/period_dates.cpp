#include "ui/model/period_dates.h"

#include <array>
#include <cstdio>

#include "settings/period_names.h"
#include "texts/language.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"
#include "ui/model/frm_liniar_dates.h"
#include "ui/model/messages.h"

namespace vok {
namespace {

constexpr char kName[] = "TextPeriod";
constexpr char kFrom[] = "txtDate1";
constexpr char kUntil[] = "txtDate2";
constexpr char kOpening[] = "CheckItraPticha";
constexpr int kPeriodNameWidth = 16;
constexpr int kDateWidth = 10;

std::string DayMonthYear(Date date) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%02d/%02d/%04d", date.Day(), date.Month(), date.Year());
  return text.data();
}

}  // namespace

PeriodDates::PeriodDates(const WindowServices& services, Form& form)
    : services_(services), locale_(services.host.locale), form_(form) {
  AddRules();
}

void PeriodDates::AddHeadingsTo(Panel panel, int row) {
  panel.Label({row, 1}, "lblPeriodName", text_number::kPeriodName);
  panel.Label({row, 2}, "lblFromDate", text_number::kFromDate);
  panel.Label({row, 3}, "lblUntilDate", text_number::kUntilDate);
  panel.Label({row, 4}, "lblItraPticha", text_number::kOpeningBalance);
}

void PeriodDates::AddPeriodTo(Panel panel, int grid_row, int row) {
  using enum ControlType;
  Control* const controls[] = {
      &panel.Field({grid_row, 1}, kTextBox, {kName, row}, "lblPeriodName", kPeriodNameWidth),
      &panel.Field({grid_row, 2}, kTextBox, {kFrom, row}, "lblFromDate", kDateWidth),
      &panel.Field({grid_row, 3}, kTextBox, {kUntil, row}, "lblUntilDate", kDateWidth),
      &panel.CheckBox({grid_row, 4}, {kOpening, row}, 0, text_number::kTipOpeningBalance),
      &panel.Button({grid_row, 5}, {"Comupd", row}, text_number::kUpdate, text_number::kTipUpdate)};
  for (Control* control : controls) control->Row = std::to_string(row + 1);
  controls[0]->Grows = true;
  HoldDate(form_, *controls[1], locale_);
  HoldDate(form_, *controls[2], locale_);
  controls[3]->Label = "lblItraPticha";
  controls[4]->Enabled = false;
  controls[4]->Symbol = "↵";
}

void PeriodDates::AddCommandsTo(Panel panel) {
  panel.CheckBox({0, 0}, "chkFromD", text_number::kFromMonthStart);
  panel.CheckBox({0, 1}, "chkUntilD", text_number::kUntilMonthEnd);
  Control& clean =
      panel.Button({0, 2}, "cmdCleanDates", text_number::kCleanDates, text_number::kTipCleanDates);
  clean.Grows = clean.AtEnd = true;
  panel.Button({0, 3}, "cmdAutoFill", text_number::kAutoFill, text_number::kTipAutoFill);
  panel.Button({0, 4}, "cmdNamePeriods", text_number::kNamePeriods, text_number::kTipNamePeriods);
}

void PeriodDates::AddRules() {
  using enum FormEvent;
  form_.On(kChanged, kName, [this](int row) { MarkName(row); });
  form_.On(kChanged, kFrom, [this](int row) { FromChanged(row); });
  form_.On(kChanged, kUntil, [this](int row) { UntilChanged(row); });
  form_.On(kLeft, kFrom, [this](int row) { FromLeft(row); });
  form_.On(kLeft, kUntil, [this](int row) { UntilLeft(row); });
  form_.On(kClicked, kOpening, [this](int row) { ApplyOpeningBalance(row); });
  form_.On(kClicked, "Comupd", [this](int row) { Normalize(row); });
  form_.On(kClicked, "chkFromD",
           [this](int) { FromMonthStart = form_.At("chkFromD").Value >= kChecked; });
  form_.On(kClicked, "chkUntilD",
           [this](int) { UntilMonthEnd = form_.At("chkUntilD").Value >= kChecked; });
  form_.On(kClicked, "cmdCleanDates", [this](int) { CleanDates(); });
  form_.On(kClicked, "cmdAutoFill", [this](int) { AutoFill(); });
  form_.On(kClicked, "cmdNamePeriods", [this](int) { NamePeriods(); });
}

void PeriodDates::Load() {
  form_.Raise(FormEvent::kClicked, "chkFromD");
  form_.Raise(FormEvent::kClicked, "chkUntilD");
}

std::optional<Date> PeriodDates::DateIn(const char* field, int row) const {
  return locale_.ParseDate(form_.Text({field, row}));
}

Date PeriodDates::SnappedFrom(Date date) const {
  return FromMonthStart ? Date::FromCivil(date.Year(), date.Month(), 1) : date;
}

Date PeriodDates::SnappedUntil(Date date) const {
  return UntilMonthEnd ? Date::FromCivil(date.Year(), date.Month() + 1, 0) : date;
}

void PeriodDates::ShowState(const char* field, int row) {
  Control& control = form_.At({field, row});
  const auto date = DateIn(field, row);
  control.Dimmed = date && date->IsZero();
  if (control.Text.empty() || date) control.Error = false;
}

void PeriodDates::ShowStates() {
  for (int row = 0; row < kPeriodCount; ++row) {
    for (const char* field : {kFrom, kUntil}) ShowState(field, row);
  }
}

void PeriodDates::MarkName(int row) {
  Control& name = form_.At({kName, row});
  name.Error = Contradicts(locale_, name.Text, FromDates(row + 1), UntilDates(row + 1));
  name.ToolTipText =
      name.Error ? GetLangString(services_.publics.language, text_number::kTipOtherDates) : "";
}

void PeriodDates::FromChanged(int row) {
  ShowState(kFrom, row);
  FromDates(row + 1) = DateIn(kFrom, row).value_or(Date{});
  MarkName(row);
  ApplyOpeningBalance(row);
}

void PeriodDates::UntilChanged(int row) {
  ShowState(kUntil, row);
  UntilDates(row + 1) = DateIn(kUntil, row).value_or(Date{});
  MarkName(row);
}

void PeriodDates::FromLeft(int row) {
  const auto from = DateIn(kFrom, row);
  const auto until = DateIn(kUntil, row);
  if (from && until) {
    if (*until < *from) {
      ShowMessage(services_, StringTableText(text_number::kNotValidDate));
      form_.SetText({kFrom, row}, "");
      Mark(kFrom, row);
    }
    return;
  }
  if (form_.Text({kFrom, row}).empty()) return;
  form_.At({"Comupd", row}).Enabled = true;
  if (from) {
    FromDates(row + 1) = SnappedFrom(*from);
    form_.SetText({kFrom, row}, locale_.ShortDate(FromDates(row + 1)));
    return;
  }
  form_.SetText({kFrom, row}, locale_.DateText(Date{}));
  Mark(kFrom, row);
  form_.Focus = ControlId(kFrom, row);
}

void PeriodDates::UntilLeft(int row) {
  if (form_.Text({kUntil, row}).empty()) return;
  const auto until = DateIn(kUntil, row);
  if (until) {
    const Date date = UntilDates(row + 1) = SnappedUntil(*until);
    form_.SetText({kUntil, row}, locale_.ShortDate(date));
    const auto from = DateIn(kFrom, row);
    if (!from || *from <= date) return;
    ShowMessage(services_, StringTableText(text_number::kInvalidPeriodDate),
                services_.host.component.executable_name, MessageIcon::kCritical);
  }
  form_.SetText({kUntil, row}, "");
  Mark(kUntil, row);
  form_.Focus = ControlId(kUntil, row);
}

void PeriodDates::ApplyOpeningBalance(int row) {
  const auto from = DateIn(kFrom, row);
  if (!from || !form_.IsChecked({kOpening, row})) return;
  const std::string first_of_year = DayMonthYear(Date::FromCivil(from->Year(), 1, 1));
  form_.SetText({kFrom, row}, locale_.DateText(DateOf(locale_, first_of_year)));
}

void PeriodDates::Normalize(int row) {
  if (const auto from = DateIn(kFrom, row)) {
    form_.SetText({kFrom, row}, locale_.ShortDate(SnappedFrom(*from)));
  }
  if (const auto until = DateIn(kUntil, row)) {
    form_.SetText({kUntil, row}, locale_.ShortDate(SnappedUntil(*until)));
  }
}

void PeriodDates::CleanDates() {
  for (int row = 0; row < kPeriodCount; ++row) {
    form_.SetText({kFrom, row}, "");
    form_.SetText({kUntil, row}, "");
    form_.SetValue({kOpening, row}, kUnchecked);
  }
  ShowStates();
}

void PeriodDates::AutoFill() {
  {
    frmLiniarDates wizard(services_);
    wizard.FromDateArr = FromDates;
    wizard.UntilDateArr = UntilDates;
    if (wizard.ShowForm()) {
      FromDates = wizard.FromDateArr;
      UntilDates = wizard.UntilDateArr;
    }
  }
  for (int row = 0; row < kPeriodCount; ++row) {
    form_.SetText({kFrom, row}, locale_.ShortDate(FromDates(row + 1)));
    form_.SetText({kUntil, row}, locale_.ShortDate(UntilDates(row + 1)));
    form_.At({"Comupd", row}).Enabled = true;
  }
}

/// Names that a person gave are replaced only when the person says so.
void PeriodDates::NamePeriods() {
  Question question{text_number::kAskRename,
                    text_number::kGivenNames,
                    {},
                    {text_number::kRename, text_number::kKeepNames}};
  std::vector<std::pair<int, std::string>> free, given;
  for (int row = 0; row < kPeriodCount; ++row) {
    const Date from = FromDates(row + 1), until = UntilDates(row + 1);
    if (from.IsZero() || until.IsZero() || until < from) continue;
    const std::string& now = form_.Text({kName, row});
    const std::string wanted = IntervalName(from, until);
    if (now == wanted) continue;
    (IsGivenName(now) ? given : free).emplace_back(row, wanted);
    if (IsGivenName(now)) question.rows.push_back({now, wanted});
  }
  constexpr std::size_t kRenameAll = 0;
  const auto answer = given.empty() ? kRenameAll : Ask(services_, question);
  if (!answer) return;
  for (const auto& [row, name] : free) form_.SetText({kName, row}, name);
  if (*answer != kRenameAll) return;
  for (const auto& [row, name] : given) form_.SetText({kName, row}, name);
}

PeriodSet PeriodDates::Read() const {
  const auto date_in = [this](const char* field, int row) {
    const std::string& text = form_.Text({field, row});
    if (text.empty()) return Date{};
    if (!DateIn(field, row)) {
      Mark(field, row);
      form_.Focus = ControlId(field, row);
    }
    return DateOf(locale_, text);
  };
  PeriodSet set;
  for (int row = 0; row < kPeriodCount; ++row) {
    set.Period(row + 1) = {form_.Text({kName, row}), date_in(kFrom, row), date_in(kUntil, row),
                           form_.IsChecked({kOpening, row})};
  }
  return set;
}

std::string PeriodDates::Entered() const {
  std::string entered;
  for (int row = 0; row < kPeriodCount; ++row) {
    for (const char* field : {kName, kFrom, kUntil}) {
      const Control& control = form_.At({field, row});
      entered += (control.Dimmed ? "" : control.Text) + '\n';
    }
    entered += std::to_string(form_.At({kOpening, row}).Value);
  }
  return entered;
}

void PeriodDates::Show(const PeriodSet& set) {
  const auto text_of = [this](Date date) {
    return date.IsZero() ? std::string() : locale_.DateText(date);
  };
  for (int row = 0; row < kPeriodCount; ++row) {
    const PeriodEntry& period = set.Period(row + 1);
    // A box of the set shown before must not move this one's from date.
    form_.SetValue({kOpening, row}, kUnchecked);
    form_.SetText({kName, row}, period.PeriodName);
    form_.SetText({kFrom, row}, text_of(period.FromDate));
    form_.SetText({kUntil, row}, text_of(period.UntilDate));
    form_.SetValue({kOpening, row}, period.IncludeOpenBalance ? kChecked : kUnchecked);
  }
  ShowStates();
}

}  // namespace vok
