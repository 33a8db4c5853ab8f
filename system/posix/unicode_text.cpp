#include "system/posix/unicode_text.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <iterator>
#include <memory>

namespace vok {
namespace {

constexpr int kWestern = 1252;

struct LanguageCodePage {
  std::string_view language;
  int code_page;
};

constexpr LanguageCodePage kCodePages[] = {
    {"ar", 1256}, {"be", 1251}, {"bg", 1251}, {"cs", 1250}, {"el", 1253}, {"et", 1257},
    {"fa", 1256}, {"he", 1255}, {"hr", 1250}, {"hu", 1250}, {"iw", 1255}, {"ja", 932},
    {"kk", 1251}, {"ko", 949},  {"lt", 1257}, {"lv", 1257}, {"mk", 1251}, {"pl", 1250},
    {"ro", 1250}, {"ru", 1251}, {"sk", 1250}, {"sl", 1250}, {"sr", 1251}, {"th", 874},
    {"tr", 1254}, {"uk", 1251}, {"vi", 1258}, {"zh", 936},
};

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

}  // namespace

std::string TextOfBytes(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return std::string(bytes.substr(3));
  if (bytes.starts_with("\xFF\xFE")) return TextOfUtf16(bytes.substr(2));
  return std::string(bytes);
}

std::string TextOfUtf16(std::string_view bytes) {
  icu::UnicodeString units;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const auto low = static_cast<unsigned char>(bytes[at]);
    const auto high = static_cast<unsigned char>(bytes[at + 1]);
    units.append(static_cast<char16_t>(high << 8 | low));
  }
  std::string text;
  units.toUTF8String(text);
  return text;
}

std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
  const std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end);
  if (rest.starts_with("\r\n")) {
    rest.remove_prefix(2);
  } else if (!rest.empty()) {
    rest.remove_prefix(1);
  }
  return line;
}

std::string_view TrimSpace(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

int CodePageOf(std::string_view language) {
  const auto* found =
      std::find_if(std::begin(kCodePages), std::end(kCodePages),
                   [&](const LanguageCodePage& row) { return row.language == language; });
  return found == std::end(kCodePages) ? kWestern : found->code_page;
}

std::optional<std::string> TextOfCodePage(std::string_view bytes, int code_page) {
  UErrorCode status = U_ZERO_ERROR;
  const std::string name = "windows-" + std::to_string(code_page);
  const std::unique_ptr<UConverter, CloseConverter> converter(ucnv_open(name.c_str(), &status));
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  if (U_FAILURE(status)) return std::nullopt;
  const icu::UnicodeString text(bytes.data(), static_cast<int32_t>(bytes.size()), converter.get(),
                                status);
  if (U_FAILURE(status)) return std::nullopt;
  std::string utf8;
  text.toUTF8String(utf8);
  return utf8;
}

}  // namespace vok
