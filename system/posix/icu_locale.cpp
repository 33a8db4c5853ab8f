#include "system/posix/icu_locale.h"

#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/localebuilder.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/smpdtfmt.h>
#include <unicode/ulocdata.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "platform/failure.h"
#include "system/posix/date_reader.h"
#include "system/posix/unicode_text.h"

namespace vok {
namespace {

constexpr double kSecondsOfDay = 86400;
constexpr double kMillisecondsOfSecond = 1000;
constexpr double kUnixZeroDay = 25569;  // 1 January 1970
constexpr int kMarch = 3;
constexpr double kBeforeAllDates = -1e17;

void Check(UErrorCode status, const std::string& what) {
  if (U_SUCCESS(status)) return;
  throw Failure(failure_number::kInternal, "Cannot load " + what + ": " + u_errorName(status) +
                                               ". Reinstall the ICU library.");
}

std::string Utf8(const icu::UnicodeString& text) {
  std::string utf8;
  text.toUTF8String(utf8);
  return utf8;
}

std::string Folded(std::string_view text) {
  const icu::StringPiece piece(text.data(), static_cast<int32_t>(text.size()));
  return Utf8(icu::UnicodeString::fromUTF8(piece).foldCase(U_FOLD_CASE_DEFAULT));
}

/// The script that the end of a locale's name stands for: "sr_RS@latin".
const char* ScriptOf(const std::string& name) {
  if (name.ends_with("@latin")) return "Latn";
  if (name.ends_with("@cyrillic")) return "Cyrl";
  return name.ends_with("@devanagari") ? "Deva" : "";
}

icu::Locale LocaleNamed(const std::string& name) {
  const std::string plain = name.substr(0, name.find_first_of(".@"));
  const bool none = plain.empty() || plain == "C" || plain == "POSIX";
  icu::Locale locale = none ? icu::Locale("en_US") : icu::Locale::createCanonical(plain.c_str());
  UErrorCode status = U_ZERO_ERROR;
  const std::string script = ScriptOf(name);
  if (!none && !script.empty()) {
    locale = icu::LocaleBuilder().setLocale(locale).setScript(script).build(status);
  }
  locale.setKeywordValue("calendar", "gregorian", status);
  locale.setKeywordValue("numbers", "latn", status);
  Check(status, "the customs of \"" + name + "\"");
  return locale;
}

std::unique_ptr<icu::SimpleDateFormat> Simple(icu::DateFormat* format) {
  auto* simple = dynamic_cast<icu::SimpleDateFormat*>(format);
  if (simple == nullptr) {
    delete format;
    Check(U_MISSING_RESOURCE_ERROR, "the date formats");
  }
  return std::unique_ptr<icu::SimpleDateFormat>(simple);
}

icu::UnicodeString PatternOf(const icu::SimpleDateFormat& format) {
  icu::UnicodeString pattern;
  return format.toPattern(pattern);
}

// Marks of writing direction go: they would travel into names and messages unseen.
icu::UnicodeString WithoutDirection(icu::UnicodeString pattern) {
  for (const char16_t mark : {u'\u200E', u'\u200F', u'\u061C'}) {
    pattern.findAndReplace(icu::UnicodeString(mark), icu::UnicodeString());
  }
  return pattern.findAndReplace(icu::UnicodeString(u'\u202F'), icu::UnicodeString(u' '));
}

// Repeats a pattern letter's only run until it is as long as asked.
icu::UnicodeString WithRun(icu::UnicodeString pattern, char16_t letter, int32_t length) {
  const int32_t first = pattern.indexOf(letter);
  if (first < 0) return pattern;
  const int32_t last = pattern.lastIndexOf(letter);
  icu::UnicodeString run;
  for (int32_t count = 0; count < length; ++count) run.append(letter);
  return pattern.replaceBetween(first, last + 1, run);
}

icu::UnicodeString ShortPattern(const icu::Locale& locale) {
  const auto format = Simple(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale));
  return WithRun(WithoutDirection(PatternOf(*format)), u'y', 4);
}

// Only a time with colons can be told from a date when it is read again.
icu::UnicodeString TimePattern(const icu::Locale& locale) {
  const auto format = Simple(icu::DateFormat::createTimeInstance(icu::DateFormat::kMedium, locale));
  const icu::UnicodeString pattern = WithoutDirection(PatternOf(*format));
  if (pattern.indexOf(u':') < 0) return u"HH:mm:ss";
  return WithRun(pattern, u'H', 2);
}

DateCustoms::Order OrderOf(const icu::UnicodeString& pattern) {
  const int32_t day = pattern.indexOf(u'd');
  if (pattern.indexOf(u'y') < day) return DateCustoms::Order::kYearMonthDay;
  return pattern.indexOf(u'M') < day ? DateCustoms::Order::kMonthDayYear
                                     : DateCustoms::Order::kDayMonthYear;
}

void AddWords(const icu::UnicodeString& text, std::set<std::string>& words) {
  const std::string folded = Folded(Utf8(text));
  for (std::size_t at = 0; at <= folded.size();) {
    const std::size_t end = std::min(folded.find_first_of(" -", at), folded.size());
    if (const auto word = LettersOf(folded.substr(at, end - at)); !word.empty()) words.insert(word);
    at = end + 1;
  }
}

// The words between the fields of a pattern: quoted, or letters beyond ASCII.
void AddPatternWords(const icu::UnicodeString& pattern, std::set<std::string>& words) {
  icu::UnicodeString literal;
  bool quoted = false;
  for (int32_t at = 0; at < pattern.length(); ++at) {
    const char16_t unit = pattern[at];
    if (unit == u'\'') quoted = !quoted;
    literal.append(unit != u'\'' && (quoted || unit >= 0x80) ? unit : u' ');
  }
  AddWords(literal, words);
}

using Symbols = icu::DateFormatSymbols;

Symbols SymbolsOf(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  Symbols symbols(locale, status);
  Check(status, "the names of months");
  return symbols;
}

template <typename Visit>
void ForEachForm(Visit visit) {
  for (const auto context : {Symbols::FORMAT, Symbols::STANDALONE}) {
    for (const auto width : {Symbols::WIDE, Symbols::ABBREVIATED}) visit(context, width);
  }
}

void AddMonths(const Symbols& symbols, MonthNames& months) {
  ForEachForm([&](auto context, auto width) {
    int32_t count = 0;
    const icu::UnicodeString* names = symbols.getMonths(count, context, width);
    for (int32_t month = 0; month < count; ++month) {
      months.Add(Folded(Utf8(names[month])), month + 1);
    }
  });
}

/// Spellings that the library does not know: "Mrz" of many ledgers, "מרס" beside "מרץ".
void AddOtherSpellings(const icu::Locale& locale, MonthNames& months) {
  const std::string language = locale.getLanguage();
  if (language == "de") months.Add("mrz", kMarch);
  if (language == "he") months.Add("מרס", kMarch);
}

void AddWeekdays(const Symbols& symbols, std::set<std::string>& words) {
  ForEachForm([&](auto context, auto width) {
    int32_t count = 0;
    const icu::UnicodeString* names = symbols.getWeekdays(count, context, width);
    for (int32_t day = 0; day < count; ++day) AddWords(names[day], words);
  });
}

DateCustoms CustomsOf(const icu::Locale& locale) {
  DateCustoms customs;
  customs.order = OrderOf(ShortPattern(locale));
  for (const auto style : {icu::DateFormat::kShort, icu::DateFormat::kMedium,
                           icu::DateFormat::kLong, icu::DateFormat::kFull}) {
    AddPatternWords(PatternOf(*Simple(icu::DateFormat::createDateInstance(style, locale))),
                    customs.fillers);
  }
  AddPatternWords(TimePattern(locale), customs.fillers);

  const Symbols symbols = SymbolsOf(locale);
  AddMonths(symbols, customs.months);
  AddOtherSpellings(locale, customs.months);
  AddWeekdays(symbols, customs.fillers);
  int32_t count = 0;
  const icu::UnicodeString* halves = symbols.getAmPmStrings(count);
  if (count >= 2) {
    customs.morning = LettersOf(Folded(Utf8(halves[0])));
    customs.afternoon = LettersOf(Folded(Utf8(halves[1])));
  }
  return customs;
}

MonthNames WithEnglish(MonthNames months) {
  AddMonths(SymbolsOf(icu::Locale::getEnglish()), months);
  return months;
}

std::unique_ptr<icu::SimpleDateFormat> FormatOf(const icu::UnicodeString& pattern,
                                                const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  auto format = std::make_unique<icu::SimpleDateFormat>(pattern, locale, status);
  auto calendar =
      std::make_unique<icu::GregorianCalendar>(*icu::TimeZone::getGMT(), locale, status);
  Check(status, "the calendar");
  calendar->setGregorianChange(kBeforeAllDates, status);
  Check(status, "the calendar");
  format->adoptCalendar(calendar.release());
  return format;
}

std::string Print(const icu::SimpleDateFormat& format, double seconds) {
  const double unix_seconds = seconds - kUnixZeroDay * kSecondsOfDay;
  icu::UnicodeString text;
  format.format(unix_seconds * kMillisecondsOfSecond, text);
  return Utf8(text);
}

}  // namespace

struct IcuLocale::Customs {
  explicit Customs(const icu::Locale& locale)
      : name(locale.getName()),
        language(locale.getLanguage()),
        reading(CustomsOf(locale)),
        months(WithEnglish(reading.months)),
        date(FormatOf(ShortPattern(locale), locale)),
        time(FormatOf(TimePattern(locale), locale)),
        number(icu::number::NumberFormatter::withLocale(locale).sign(UNUM_SIGN_NEGATIVE)) {}

  std::string name;
  std::string language;
  DateCustoms reading;
  MonthNames months;
  std::unique_ptr<icu::SimpleDateFormat> date;
  std::unique_ptr<icu::SimpleDateFormat> time;
  icu::number::LocalizedNumberFormatter number;
};

IcuLocale::IcuLocale(const std::string& name)
    : customs_(std::make_unique<const Customs>(LocaleNamed(name))) {}

IcuLocale::~IcuLocale() = default;

std::string IcuLocale::NameFromEnvironment() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

std::string IcuLocale::FoldCase(std::string_view text) const { return Folded(text); }

std::optional<std::string> IcuLocale::FromCodePage(std::string_view bytes, int code_page) const {
  return TextOfCodePage(bytes, code_page != 0 ? code_page : CodePageOf(customs_->language));
}

std::optional<Date> IcuLocale::ParseDate(std::string_view text) const {
  return ReadDate(customs_->reading, Folded(text));
}

std::optional<int> IcuLocale::MonthNamed(std::string_view text) const {
  return customs_->months.NamedOrCutShort(Folded(text));
}

std::string IcuLocale::ShortDate(Date date) const {
  return Print(*customs_->date, date.DayOnly().serial * kSecondsOfDay);
}

std::string IcuLocale::DateText(Date date) const {
  const double seconds = std::round(date.serial * kSecondsOfDay);
  const double days = std::floor(seconds / kSecondsOfDay);
  std::string time = Print(*customs_->time, seconds);
  if (days == 0) return time;
  const std::string day = Print(*customs_->date, days * kSecondsOfDay);
  return seconds == days * kSecondsOfDay ? day : day + " " + time;
}

std::string IcuLocale::NumberText(double number, int decimals) const {
  UErrorCode status = U_ZERO_ERROR;
  const auto places = icu::number::Precision::fixedFraction(decimals);
  const auto text = customs_->number.precision(places).formatDouble(number, status);
  const icu::UnicodeString written = text.toString(status);
  Check(status, "the form of numbers");
  return Utf8(written);
}

bool IcuLocale::UsesLetterPaper() const {
  constexpr int32_t kLetterHeight = 279;  // in millimetres
  int32_t height = 0, width = 0;
  UErrorCode status = U_ZERO_ERROR;
  ulocdata_getPaperSize(customs_->name.c_str(), &height, &width, &status);
  return U_SUCCESS(status) && height == kLetterHeight;
}

}  // namespace vok
