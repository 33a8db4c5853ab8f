// Case, dates and numbers by the rules that ICU holds for every language and country.
#pragma once

#include <memory>
#include <string>

#include "platform/locale.h"

namespace vok {

/// Dates are Gregorian; they and numbers are written in the digits 0 to 9 everywhere.
class IcuLocale : public Locale {
 public:
  /// `name` such as "he_IL", "de_DE.UTF-8", "en-GB". "", "C" and "POSIX" mean the United States, as
  /// they do to the system. A country that ICU does not know gets the language's usual customs.
  explicit IcuLocale(const std::string& name);
  ~IcuLocale() override;

  /// The user's, by the environment's `LC_ALL`, `LC_TIME` or `LANG`, the first that is set.
  static std::string NameFromEnvironment();

  std::string FoldCase(std::string_view text) const override;
  std::optional<std::string> FromCodePage(std::string_view bytes, int code_page) const override;
  std::optional<Date> ParseDate(std::string_view text) const override;
  std::optional<int> MonthNamed(std::string_view text) const override;
  /// With a year of four digits.
  std::string ShortDate(Date date) const override;
  std::string DateText(Date date) const override;
  std::string NumberText(double number, int decimals) const override;
  bool UsesLetterPaper() const override;

 private:
  struct Customs;
  std::unique_ptr<const Customs> customs_;
};

}  // namespace vok
