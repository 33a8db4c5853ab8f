// vokcube periods fill: the dates of a period set, by month, quarter, half year or year.
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/print.h"
#include "platform/failure.h"
#include "platform/shown_text.h"
#include "settings/linear_dates.h"
#include "settings/period_names.h"
#include "settings/set_lists.h"
#include "settings/set_writer.h"
#include "settings/settings_database.h"

namespace vok::cli {
namespace {

struct FillOptions {
  std::string name;
  std::string interval;
  std::string from;
  std::string until;
  int16_t first = 0;
  int16_t last = 0;
};

const std::vector<std::string> kIntervals = {"month", "quarter", "half-year", "year"};

/// The saved set of that name, else a new one.
PeriodSet SavedOrNew(const Host& host, const Environment& environment, const std::string& name) {
  for (const PeriodSet& set : ReadAllPeriodSets(host, environment)) {
    if (EqualNoCase(host.locale, set.SetName, name)) return set;
  }
  PeriodSet set;
  set.SetName = name;
  return set;
}

LinearDates RunOf(const FillOptions& options, Date today) {
  LinearDates run;
  run.interval = static_cast<int>(
      std::find(kIntervals.begin(), kIntervals.end(), options.interval) - kIntervals.begin());
  run.anchor = ParseIsoDate(options.from).value_or(Date{});
  run.end = ParseIsoDate(options.until).value_or(Date{});
  run.first = options.first;
  run.last = options.last;
  run.today = today;
  return run;
}

/// Gives a period its dates. A name that a person gave stays; the name of another interval does
/// not.
void Assign(PeriodEntry& period, Date from, Date until) {
  if (!IsGivenName(period.PeriodName)) period.PeriodName = IntervalName(from, until);
  period.FromDate = from;
  period.UntilDate = until;
}

void FillDates(PeriodSet& set, const LinearDates& run, const Locale& locale) {
  DateList from;
  DateList until;
  for (int number = 1; number <= kPeriodCount; ++number) {
    from(number) = set.Period(number).FromDate;
    until(number) = set.Period(number).UntilDate;
  }
  FillLinearDates(run, locale, from, until);
  const int first = run.first == 0 ? 1 : run.first;
  const int last = run.last == 0 ? kPeriodCount : run.last;
  for (int number = std::min(first, last); number <= std::max(first, last); ++number) {
    Assign(set.Period(number), from(number), until(number));
  }
}

void Print(const PeriodSet& set) {
  for (int number = 1; number <= kPeriodCount; ++number) {
    const PeriodEntry& period = set.Period(number);
    std::cout << std::setw(2) << number << "  " << std::setw(10) << IsoDate(period.FromDate) << "  "
              << std::setw(10) << IsoDate(period.UntilDate) << "  " << OneLine(period.PeriodName)
              << '\n';
  }
}

/// Names that stay though the dates are new.
void NoteOtherDates(const Locale& locale, const PeriodSet& set) {
  for (int number = 1; number <= kPeriodCount; ++number) {
    const PeriodEntry& period = set.Period(number);
    if (!Contradicts(locale, period.PeriodName, period.FromDate, period.UntilDate)) continue;
    std::cerr << "Note: the name of period " << number << ", " << OneLine(Quoted(period.PeriodName))
              << ", is of other dates than " << IsoDate(period.FromDate) << " to "
              << IsoDate(period.UntilDate) << '\n';
  }
}

void Fill(const CommonOptions& common, const FillOptions& options) {
  CheckSetName("period set", options.name);
  const auto session = common.NewSession();
  const Host& host = session->host();
  PrepareDatabase(*session);
  const Environment& environment = session->publics().environment;
  PeriodSet set = SavedOrNew(host, environment, options.name);
  FillDates(set, RunOf(options, host.clock.Now()), host.locale);
  SavePeriods(host, environment, set);
  Print(set);
  NoteOtherDates(host.locale, set);
}

std::string IsDate(const std::string& text) {
  return ParseIsoDate(text) ? "" : "\"" + text + "\" is not a date; write it as 2024-01-31";
}

}  // namespace

void AddPeriodsCommand(CLI::App& app, const CommonOptions& common) {
  auto* command = app.add_subcommand("periods", "Fill the dates of a period set");
  command->require_subcommand(1);
  command->fallthrough();
  const auto options = std::make_shared<FillOptions>();
  auto* fill =
      command->add_subcommand("fill", "Give a set's periods consecutive intervals and save it");
  fill->add_option("NAME", options->name, "The saved set, or a new one")->required();
  fill->add_option("--interval", options->interval, "month, quarter, half-year or year")
      ->required()
      ->check(CLI::IsMember(kIntervals));
  fill->add_option("--from", options->from, "A day of the first month; periods follow it")
      ->check(IsDate, "", "");
  fill->add_option("--until", options->until, "A day of the last month; periods lead up to it")
      ->check(IsDate, "", "");
  fill->add_option("--first", options->first, "First period to fill (1)")
      ->check(CLI::Range(1, kPeriodCount));
  fill->add_option("--last", options->last, "Last period to fill (12)")
      ->check(CLI::Range(1, kPeriodCount));
  fill->callback([&common, options] { Fill(common, *options); });
}

}  // namespace vok::cli
