#include "cli/journal_guess.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string_view>

#include "cli/print.h"
#include "platform/failure.h"
#include "providers/cube/olap/build/decimal.h"

namespace vok::cli {
namespace {

/// Days before months: so most countries write.
const std::vector<std::string> kDateForms = {"yyyy-mm-dd", "d.m.yyyy", "d/m/yyyy", "m/d/yyyy",
                                             "d-m-yyyy",   "yyyy/m/d", "yyyymmdd", "d.m.yy",
                                             "d/m/yy",     "m/d/yy"};

/// Beginnings of words that headers have for each role, in several languages.
const std::array<std::vector<std::string>, kRoleNames.size()> kWords = {
    {{"date", "datum", "fecha", "дата", "תאריך"},
     {"account", "acct", "konto", "cuenta", "compte", "счет", "счёт", "חשבון"},
     {"amount", "sum", "betrag", "umsatz", "importe", "montant", "сумма", "סכום"},
     {"quantity", "qty", "units", "pieces", "menge", "количество", "כמות"},
     {"ledger", "book", "company", "mandant", "firma", "организация", "книга", "חברה"},
     {"text", "description", "memo", "details", "buchungstext", "beschreibung", "описание",
      "назначение", "פרטים", "תיאור"}}};

struct ColumnFacts {
  std::string name;
  std::size_t filled = 0;
  std::vector<std::size_t> dates;  ///< from the first on that are of each form
  std::size_t with_point = 0;
  std::size_t with_comma = 0;
  std::size_t with_decimals = 0;
  std::size_t unclear = 0;                       ///< of these, where the mark may part thousands
  std::set<std::string, std::less<>> different;  ///< not all, when there are many
  /// The first field that is not a date of a form that all before it have, with its place.
  std::string not_date;
  std::string not_amount;  ///< the first that is not an amount
};

bool IsNumber(std::string_view text) {
  return olap::ParseDecimal(text).fit != olap::NumberFit::kNone;
}

bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// "1,250" and "-12.500", but not "0,125".
bool HasUnclearMark(std::string_view text) {
  const std::size_t mark = text.find_first_of(".,");
  if (mark != text.find_last_of(".,") || mark + 4 != text.size()) return false;
  std::string_view whole = text.substr(0, mark);
  while (!whole.empty() && !IsDigit(whole.front())) whole.remove_prefix(1);
  return !whole.empty() && whole.size() <= 3 && whole.front() != '0';
}

void Learn(std::string_view text, const olap::TableReader& row,
           const std::vector<std::string>& forms, ColumnFacts& column) {
  constexpr std::size_t kMostDifferent = 10'000;
  const auto note = [&](bool fits, std::string& first) {
    if (!fits && first.empty()) first = Quoted(text) + " (" + row.Place() + ")";
  };
  ++column.filled;
  bool is_date = false;
  for (std::size_t i = 0; i < forms.size(); ++i) {
    const bool fits_so_far = column.dates[i] + 1 == column.filled;
    if (!fits_so_far || !olap::IsoDateIn(forms[i], text)) continue;
    ++column.dates[i];
    is_date = true;
  }
  const bool has_point = IsNumber(text), has_comma = IsNumber(olap::WithPoint(text));
  if (has_point) ++column.with_point;
  if (has_comma) ++column.with_comma;
  note(is_date, column.not_date);
  note(has_point || has_comma, column.not_amount);
  if (text.find_first_of(".,") != std::string_view::npos) {
    ++column.with_decimals;
    if (HasUnclearMark(text)) ++column.unclear;
  }
  if (column.different.size() < kMostDifferent && !column.different.contains(text)) {
    column.different.emplace(text);
  }
}

bool HoldsDates(const ColumnFacts& column) {
  return column.filled > 0 && std::ranges::find(column.dates, column.filled) != column.dates.end();
}

bool HoldsAmounts(const ColumnFacts& column) {
  return column.filled > 0 &&
         (column.with_point == column.filled || column.with_comma == column.filled);
}

bool Repeats(const ColumnFacts& column) {
  return column.filled > 0 && 2 * column.different.size() <= column.filled;
}

class Guess {
 public:
  Guess(const Locale& locale, const std::vector<ColumnFacts>& columns, const JournalColumns& given)
      : locale_(locale), columns_(columns), chosen_(given) {}

  JournalColumns Choose() {
    const auto any = [](const ColumnFacts&) { return true; };
    ByName(Role::kDate, HoldsDates);
    ByName(Role::kAmount, HoldsAmounts);
    ByName(Role::kQuantity, HoldsAmounts);
    ByName(Role::kAccount, any);
    ByName(Role::kLedger, Repeats);
    ByName(Role::kText, any);
    Best(Role::kDate, HoldsDates, [](const ColumnFacts&) { return std::size_t{1}; });
    Best(Role::kAmount, HoldsAmounts, [](const ColumnFacts& c) { return 1 + c.with_decimals; });
    Best(Role::kAccount, Repeats, [](const ColumnFacts& c) { return c.with_point + 1; });
    return chosen_;
  }

 private:
  bool IsFree(const ColumnFacts& column) const {
    return std::ranges::find(chosen_, column.name) == chosen_.end();
  }
  std::string& Of(Role role) { return chosen_[static_cast<std::size_t>(role)]; }

  template <typename Fits>
  void ByName(Role role, Fits fits) {
    for (const std::string& word : kWords[static_cast<std::size_t>(role)]) {
      for (const ColumnFacts& column : columns_) {
        const bool named = locale_.FoldCase(column.name).find(word) != std::string::npos;
        if (Of(role).empty() && named && IsFree(column) && fits(column)) Of(role) = column.name;
      }
    }
  }

  /// The first of the columns with the highest worth, when none has the name.
  template <typename Fits, typename Worth>
  void Best(Role role, Fits fits, Worth worth) {
    if (!Of(role).empty()) return;
    std::size_t highest = 0;
    for (const ColumnFacts& column : columns_) {
      if (!IsFree(column) || !fits(column) || worth(column) <= highest) continue;
      highest = worth(column);
      Of(role) = column.name;
    }
  }

  const Locale& locale_;
  const std::vector<ColumnFacts>& columns_;
  JournalColumns chosen_;
};

const ColumnFacts& Named(const std::vector<ColumnFacts>& columns, const std::string& name) {
  const auto found = std::ranges::find(columns, name, &ColumnFacts::name);
  if (found != columns.end()) return *found;
  std::vector<std::string> names;
  std::ranges::transform(columns, std::back_inserter(names), &ColumnFacts::name);
  throw Failure(failure_number::kNotFound, "The journal has no column " + Quoted(name) +
                                               ". Its columns: " + olap::Listed(names));
}

[[noreturn]] void ThrowUnfit(const ColumnFacts& column, const std::string& what,
                             const std::string& odd) {
  throw Failure(failure_number::kNotFound, "Some fields of the column " + Quoted(column.name) +
                                               " are not " + what +
                                               (odd.empty() ? "" : ", such as " + odd) +
                                               "; mend them, or name another column");
}

void RequireRoles(const JournalColumns& chosen, const std::vector<std::string>& header,
                  const KnownForm& known) {
  if (chosen[0].empty() && !known.dates.empty()) {
    throw Failure(failure_number::kNotFound, "No column of the journal has dates of the form " +
                                                 known.dates +
                                                 " alone; give another form with --dates, or name "
                                                 "the column with --date. Its columns: " +
                                                 olap::Listed(header));
  }
  for (const Role role : {Role::kDate, Role::kAccount, Role::kAmount}) {
    const auto index = static_cast<std::size_t>(role);
    if (!chosen[index].empty()) continue;
    throw Failure(failure_number::kNotFound,
                  std::string("Which column of the journal holds the ") + kRoleNames[index] +
                      " cannot be told; name it with --" + kRoleNames[index] +
                      ". Its columns: " + olap::Listed(header));
  }
}

/// "" for dates that need no form.
std::string DateForm(const ColumnFacts& date, const std::vector<std::string>& forms) {
  if (!HoldsDates(date)) ThrowUnfit(date, "dates of one form", date.not_date);
  const auto form_at = [&](auto place) {
    return forms[static_cast<std::size_t>(place - date.dates.begin())];
  };
  const auto first = std::ranges::find(date.dates, date.filled);
  const auto second = std::find(first + 1, date.dates.end(), date.filled);
  if (second != date.dates.end()) {
    throw Failure(failure_number::kNotFound, "The dates of the column " + Quoted(date.name) +
                                                 " can be " + form_at(first) + " or " +
                                                 form_at(second) + "; say which with --dates");
  }
  return form_at(first) == kDateForms[0] ? "" : form_at(first);
}

[[noreturn]] void ThrowUnclear(const std::vector<const ColumnFacts*>& columns, bool are_points) {
  const auto first = std::ranges::find_if(columns, &ColumnFacts::unclear);
  throw Failure(failure_number::kNotFound,
                "The marks in the column " + Quoted((*first)->name) +
                    " can part thousands or decimals; " +
                    (are_points ? "say with --decimal . or --decimal , which of the two parts "
                                  "decimals"
                                : "if they part decimals, say --decimal , and if they part "
                                  "thousands, take them out of the journal"));
}

bool Fits(const ColumnFacts& column, char mark) {
  return (mark == '.' ? column.with_point : column.with_comma) == column.filled;
}

/// Of all columns together: one mark parts the decimals of a journal.
char DecimalMark(const std::vector<const ColumnFacts*>& columns, const std::string& known) {
  const auto all_fit = [&](char mark) {
    return std::ranges::all_of(columns, [mark](const auto* each) { return Fits(*each, mark); });
  };
  const bool is_point = known != "," && all_fit('.'), is_comma = known != "." && all_fit(',');
  if (!is_point && !is_comma) {
    const auto odd = std::ranges::find_if(columns, [&](const auto* each) {
      return known.empty() ? !HoldsAmounts(*each) : !Fits(*each, known[0]);
    });
    const ColumnFacts& column = odd == columns.end() ? *columns.back() : **odd;
    const std::string what =
        known.empty() ? "amounts of one form" : "amounts with --decimal " + known;
    ThrowUnfit(column, what, column.not_amount);
  }
  std::size_t unclear = 0, with_decimals = 0;
  for (const ColumnFacts* column : columns) {
    unclear += column->unclear;
    with_decimals += column->with_decimals;
  }
  if (known.empty() && unclear > 0 && unclear == with_decimals) ThrowUnclear(columns, is_point);
  return is_point ? '.' : ',';
}

}  // namespace

char GuessSeparator(std::string_view text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  const auto count = [line](char letter) { return std::count(line.begin(), line.end(), letter); };
  constexpr char kSeparators[] = {',', ';', '\t', '|'};
  return *std::max_element(std::begin(kSeparators), std::end(kSeparators),
                           [&](char a, char b) { return count(a) < count(b); });
}

JournalGuess GuessJournal(const Locale& locale, olap::TableParts& journal,
                          const std::vector<std::string>& header, const JournalColumns& given,
                          const KnownForm& known, const std::function<void(double)>& progress) {
  std::vector<ColumnFacts> columns(header.size());
  const auto forms = known.dates.empty() ? kDateForms : std::vector{known.dates};
  for (std::size_t i = 0; i < header.size(); ++i) {
    columns[i].name = header[i];
    columns[i].dates.resize(forms.size());
  }
  JournalGuess guess;
  while (const auto rows = journal.Next()) {
    while (rows->Next()) {
      for (std::size_t i = 0; i < columns.size(); ++i) {
        const olap::Field& field = rows->Fields()[i];
        if (!field.text.empty()) Learn(field.text, *rows, forms, columns[i]);
      }
    }
    progress(journal.Done());
  }
  guess.columns = Guess(locale, columns, given).Choose();
  RequireRoles(guess.columns, header, known);
  for (const ColumnFacts& column : columns) {
    const bool is_free = std::ranges::find(guess.columns, column.name) == guess.columns.end();
    const bool is_money = HoldsAmounts(column) && !HoldsDates(column) && column.with_decimals > 0;
    if (is_free && is_money) guess.other_amounts.push_back(column.name);
  }
  const ColumnFacts& date = Named(columns, guess.columns[0]);
  guess.form.dates = DateForm(date, forms);
  std::vector<const ColumnFacts*> numbers;
  for (const Role role : {Role::kAmount, Role::kQuantity}) {
    const std::string& name = guess.columns[static_cast<std::size_t>(role)];
    if (!name.empty()) numbers.push_back(&Named(columns, name));
  }
  guess.form.decimal = DecimalMark(numbers, known.decimal);
  return guess;
}

}  // namespace vok::cli
