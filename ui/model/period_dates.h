// The twelve period rows of the main query window: how typed dates are accepted, brought into form
// and checked, and the commands that fill and empty them.
//
// Controls, each an array of twelve: `TextPeriod` (name), `txtDate1` (from), `txtDate2` (until),
// `CheckItraPticha` (includes the opening balance), `Comupd` (brings the row's dates to the start
// and end of their months, as far as the boxes below ask for it). One for all: the boxes `chkFromD`
// and `chkUntilD`, the commands `cmdCleanDates`, `cmdAutoFill` and `cmdNamePeriods`.
//
// What is refused is refused in its field, which is marked, with a message or with the focus;
// nothing fails. The zero date is shown dimmed: it is not a date. A name that says another time
// than its row's dates is marked.
#pragma once

#include "settings/linear_dates.h"
#include "settings/records.h"
#include "ui/model/panel.h"
#include "ui/model/toolkit.h"

namespace vok {

class PeriodDates {
 public:
  /// Adds the rules to the form, which goes with this object.
  PeriodDates(const WindowServices& services, Form& form);
  PeriodDates(const PeriodDates&) = delete;
  PeriodDates& operator=(const PeriodDates&) = delete;

  void AddHeadingsTo(Panel panel, int row);
  /// The controls of period `row` + 1, from column 1 on.
  void AddPeriodTo(Panel panel, int grid_row, int row);
  /// The boxes and commands for all rows, in row 0 of the panel.
  void AddCommandsTo(Panel panel);

  /// The dates of the rows as far as their texts are dates; row i has period number i + 1.
  DateList FromDates;
  DateList UntilDates;
  bool FromMonthStart = false;
  bool UntilMonthEnd = false;

  /// Takes the flags from the boxes. Part of the form's load.
  void Load();

  /// The rows as a period set without a name. Failure 13 for a text that is not a date, in a field
  /// that is marked and gets the focus.
  PeriodSet Read() const;
  void Show(const PeriodSet& set);
  /// What the rows hold, as one text, to tell whether it changed.
  std::string Entered() const;

 private:
  void AddRules();
  void FromChanged(int row);
  void UntilChanged(int row);
  void FromLeft(int row);
  void UntilLeft(int row);
  void ApplyOpeningBalance(int row);
  void Normalize(int row);
  void CleanDates();
  void AutoFill();
  void NamePeriods();

  std::optional<Date> DateIn(const char* field, int row) const;
  /// Marks a field whose date is refused; its next date, or none, takes the mark away.
  void Mark(const char* field, int row) const { form_.At({field, row}).Error = true; }
  void ShowState(const char* field, int row);
  void MarkName(int row);
  void ShowStates();
  Date SnappedFrom(Date date) const;
  Date SnappedUntil(Date date) const;

  const WindowServices& services_;
  const Locale& locale_;
  Form& form_;
};

}  // namespace vok
