// What depends on the user's language and country: case, and dates and numbers as texts.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date.h"

namespace vok {

class Locale {
 public:
  virtual ~Locale() = default;

  /// Full Unicode case folding, independent of the country: two texts are equal without regard to
  /// case when their folded forms are the same bytes.
  virtual std::string FoldCase(std::string_view text) const = 0;
  /// Text of a Windows code page such as 1255 as UTF-8; 0 is the code page of the user's language.
  /// Nothing for bytes that are not a text there, and for a code page that is not known.
  virtual std::optional<std::string> FromCodePage(std::string_view bytes, int code_page) const = 0;
  /// The date that the text means to this user; nothing when it means none. Accepts the short,
  /// medium and long forms of the country and ISO 8601.
  virtual std::optional<Date> ParseDate(std::string_view text) const = 0;
  /// 1 to 12 for a month's name in the user's language or in English: full, short, or cut short to
  /// three letters or more that no other month begins with; nothing for another text.
  virtual std::optional<int> MonthNamed(std::string_view text) const = 0;
  /// The named format "Short Date".
  virtual std::string ShortDate(Date date) const = 0;
  /// Default date-to-text form: the short date, the time when there is one, the time alone for the
  /// zero date ("00:00:00" in most countries).
  virtual std::string DateText(Date date) const = 0;
  /// A finite number in groups, rounded to so many decimal places: "1,234.50". To be shown, not
  /// read again: it may hold marks of writing direction.
  virtual std::string NumberText(double number, int decimals) const = 0;
  /// Whether the country prints on Letter, and not on A4.
  virtual bool UsesLetterPaper() const { return false; }
};

/// The one way to compare names without regard to case. Plain ASCII never reaches the locale.
bool EqualNoCase(const Locale& locale, std::string_view a, std::string_view b);

/// Names of one or more languages. Blanks, points, hyphens, apostrophes and marks of writing
/// direction do not count. All texts are case folded by the caller.
class MonthNames {
 public:
  /// `month`: 1 to 12. A name that is there already keeps its month.
  void Add(std::string_view folded_name, int month);

  /// The month of exactly this name.
  std::optional<int> Named(std::string_view folded) const;
  /// That, or the month whose names alone begin with the text, from three letters on.
  std::optional<int> NamedOrCutShort(std::string_view folded) const;

 private:
  std::map<std::string, int> months_;
};

}  // namespace vok
