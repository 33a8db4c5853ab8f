#include "system/windows/windows_locale.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

TEST(WindowsLocale, RefusesDatesOfNoCalendarAndUnknownCountries) {
  EXPECT_THROW(WindowsLocale("en_GB").ShortDate(Date{1e9}), Failure);
  EXPECT_THROW(WindowsLocale("no such country"), Failure);
}

TEST(Utf16, TurnsTextsAroundWhole) {
  const std::string text = "a é Я ש 𝄞";
  EXPECT_EQ(Utf8(Utf16(text)), text);
  EXPECT_EQ(Utf16("𝄞").size(), 2U);
  EXPECT_EQ(Utf8(std::wstring(1, L'\xD834')), "�");
  EXPECT_EQ(Utf8OfAnsi(AnsiText("plain")), "plain");
}

}  // namespace
}  // namespace vok::windows
