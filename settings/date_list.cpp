#include "settings/date_list.h"

#include "platform/failure.h"

namespace vok {

Date& DateList::operator()(int number) {
  if (number < 1 || number > kPeriodCount) {
    throw Failure(failure_number::kSubscript, "Subscript out of range: there is no period " +
                                                  std::to_string(number) + ", only 1 to 12");
  }
  return dates_[static_cast<std::size_t>(number - 1)];
}

Date DateOf(const Locale& locale, const std::string& text) {
  const auto date = locale.ParseDate(text);
  if (!date) throw Failure(failure_number::kTypeMismatch, "\"" + text + "\" is no date");
  return *date;
}

Date ThroughShortDate(const Locale& locale, Date date) {
  return DateOf(locale, locale.ShortDate(date));
}

}  // namespace vok
