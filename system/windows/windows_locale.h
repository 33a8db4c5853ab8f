// Dates as OLE Automation reads and writes them, numbers and case by the system's tables.
#pragma once

#include <string>

#include "platform/locale.h"

namespace vok::windows {

class WindowsLocale : public Locale {
 public:
  /// The user's own customs, with what they changed in the control panel.
  WindowsLocale();
  /// A country's customs unchanged; `name` such as "he_IL" or "en-GB".
  explicit WindowsLocale(const std::string& name);

  std::string FoldCase(std::string_view text) const override;
  std::optional<std::string> FromCodePage(std::string_view bytes, int code_page) const override;
  std::optional<Date> ParseDate(std::string_view text) const override;
  std::optional<int> MonthNamed(std::string_view text) const override;
  /// Failures: 6 for a date outside the years 100 to 9999; `DateText` alike.
  std::string ShortDate(Date date) const override;
  std::string DateText(Date date) const override;
  std::string NumberText(double number, int decimals) const override;
  bool UsesLetterPaper() const override;

 private:
  std::string Text(Date date, uint32_t flags) const;
  std::wstring Custom(uint32_t type) const;
  unsigned CustomNumber(uint32_t type) const;

  uint32_t country_;
  uint32_t flags_;
  MonthNames months_;
};

}  // namespace vok::windows
