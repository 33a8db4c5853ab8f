#include "component/workbook_look.h"

#include <algorithm>
#include <string_view>

#include "component/result_grid.h"
#include "platform/locale.h"
#include "platform/text.h"

namespace vok {
namespace {

constexpr const char* kQuantityFormat = "#,##0.###";
constexpr const char* kMoneyFormat = "#,##0.00";

struct NamedFormat {
  std::string_view name;
  std::string_view code;
};

/// The names that measures may have in place of formats.
constexpr NamedFormat kNamedFormats[] = {{"Standard", kMoneyFormat},
                                         {"Currency", kMoneyFormat},
                                         {"Fixed", "0.00"},
                                         {"Percent", "0.00%"}};

bool IsDigitPlace(char c) { return c == '#' || c == '0'; }

/// Whether it has places of digits, marks of groups between them, at most one point after them and
/// at most a sign of percent at the end: every program understands that in the same way.
bool IsPlainFormat(std::string_view format) {
  if (format.ends_with('%')) format.remove_suffix(1);
  const std::size_t point = std::min(format.find('.'), format.size());
  for (std::size_t i = 0; i < format.size(); ++i) {
    const bool between = i > 0 && i + 1 < format.size() && IsDigitPlace(format[i - 1]) &&
                         IsDigitPlace(format[i + 1]);
    const bool is_mark = i == point || (format[i] == ',' && i < point);
    if (!IsDigitPlace(format[i]) && !(is_mark && between)) return false;
  }
  return !format.empty();
}

std::string KnownFormat(const std::string& format, const std::string& otherwise) {
  for (const NamedFormat& known : kNamedFormats) {
    if (EqualNoCaseAscii(format, known.name)) return std::string(known.code);
  }
  return IsPlainFormat(format) ? format : otherwise;
}

/// The text without marks of writing direction.
std::string Visible(std::string text) {
  for (const std::string_view mark : {"\xE2\x80\x8E", "\xE2\x80\x8F", "\xD8\x9C"}) {
    for (std::size_t at; (at = text.find(mark)) != text.npos;) text.erase(at, mark.size());
  }
  return text;
}

/// How the country writes -1, its digit replaced.
std::string NegativeOne(const Locale& locale) {
  const std::string one = Visible(locale.NumberText(1, 0));
  std::string negative = Visible(locale.NumberText(-1, 0));
  const std::size_t at = negative.find(one);
  if (at == negative.npos) return "-1";
  return negative.replace(at, one.size(), "1");
}

bool IsFromRight(const Host& host, Publics& publics) {
  if (publics.language.LanguageTable) return publics.language.IsRightToLeft();
  Language language;
  InitLanguage(host, publics.environment, language);
  return IsReadFromRight(language);
}

}  // namespace

std::string SheetFormat(const std::string& measure_format, const std::string& otherwise,
                        const std::string& negative) {
  std::string format = KnownFormat(measure_format, otherwise);
  const std::size_t digits = negative.find('1');
  const std::string before = negative.substr(0, digits), after = negative.substr(digits + 1);
  const bool is_shown = (before + after).find_first_not_of("-() ") == std::string::npos;
  if (!is_shown || negative == "-1") return format;
  std::string room;  // so that the digits of all numbers stand in line
  for (const char c : after) room += std::string("_") + c;
  return format + room + ";" + before + format + after;
}

WorkbookLook RunLook(const Host& host, Publics& publics, const std::string& title) {
  WorkbookLook look;
  look.title = title;
  look.captions = QuantityColumn(1) - 1;
  const std::string negative = NegativeOne(host.locale);
  const auto add = [&](const std::string& measure, const char* otherwise) {
    const auto& formats = publics.cube.MeasureFormats;
    const auto known = formats.find(host.locale.FoldCase(measure));
    look.formats.push_back(
        SheetFormat(known == formats.end() ? "" : known->second, otherwise, negative));
  };
  for (std::size_t period = 1; period <= kPeriodCount; ++period) {
    const MoneySetEntry& set = publics.settings.data_source.MoneySets.at(period);
    add(set.Qty, kQuantityFormat);
    add(set.Measure, kMoneyFormat);
  }
  look.right_to_left = IsFromRight(host, publics);
  look.letter_paper = host.locale.UsesLetterPaper();
  return look;
}

}  // namespace vok
