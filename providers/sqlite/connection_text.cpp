#include "providers/sqlite/connection_text.h"

#include <algorithm>
#include <array>
#include <map>

#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

using Parts = std::map<std::string, std::string>;

[[noreturn]] void ThrowBadText(const std::string& text, const std::string& why) {
  throw Failure(failure_number::kUnspecified,
                "The connection text \"" + text + "\" is not understood: " + why);
}

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

/// Walks over one text.
class PartReader {
 public:
  explicit PartReader(const std::string& text) : text_(text) {}

  Parts Read() {
    Parts parts;
    while (at_ < text_.size()) {
      const std::size_t end = std::min(text_.find_first_of("=;", at_), text_.size());
      const auto keyword = TrimBlanks(std::string_view(text_).substr(at_, end - at_));
      at_ = end + 1;
      if (end < text_.size() && text_[end] == '=') {
        if (keyword.empty()) ThrowBadText(text_, "a value stands without its keyword");
        parts[LowerAscii(keyword)] = ReadValue();
      } else if (!keyword.empty()) {
        ThrowBadText(text_, "\"" + std::string(keyword) + "\" has no value");
      }
    }
    return parts;
  }

 private:
  std::string ReadValue() {
    at_ = std::min(text_.find_first_not_of(' ', at_), text_.size());
    if (at_ < text_.size() && (text_[at_] == '"' || text_[at_] == '\'')) return ReadQuoted();
    const std::size_t end = std::min(text_.find(';', at_), text_.size());
    const auto value = TrimBlanks(std::string_view(text_).substr(at_, end - at_));
    at_ = end + 1;
    return std::string(value);
  }

  std::string ReadQuoted() {
    const char quote = text_[at_++];
    std::string value;
    for (;; ++at_) {
      if (at_ >= text_.size()) ThrowBadText(text_, "a quote is not closed");
      if (text_[at_] == quote && (++at_ >= text_.size() || text_[at_] != quote)) break;
      value += text_[at_];
    }
    const std::size_t end = std::min(text_.find(';', at_), text_.size());
    if (!TrimBlanks(std::string_view(text_).substr(at_, end - at_)).empty()) {
      ThrowBadText(text_, "more text follows a closing quote");
    }
    at_ = end + 1;
    return value;
  }

  const std::string& text_;
  std::size_t at_ = 0;
};

bool IsKnown(const std::string& keyword) {
  constexpr std::array<std::string_view, 7> kKnown = {
      "provider", "data source",           "user id",          "password",
      "mode",     "persist security info", "locale identifier"};
  return keyword.starts_with("jet oledb:") ||
         std::find(kKnown.begin(), kKnown.end(), keyword) != kKnown.end();
}

void CheckProvider(const std::string& text, const Parts& parts) {
  const auto provider = parts.find("provider");
  if (provider != parts.end() && LowerAscii(provider->second) == LowerAscii(kJetProvider)) return;
  throw Failure(failure_number::kProviderNotFound,
                "Provider cannot be found: the connection text \"" + text +
                    "\" names none that opens a settings database. Use Provider=" +
                    std::string(kJetProvider) + ".");
}

}  // namespace

std::string StoreConnectionText::ToText() const {
  std::string source = data_source;
  if (source.find_first_of(";\"'") != std::string::npos || TrimBlanks(source) != source) {
    for (std::size_t at = 0; (at = source.find('"', at)) != std::string::npos; at += 2) {
      source.insert(at, 1, '"');
    }
    source = "\"" + source + "\"";
  }
  return "Provider=" + std::string(kJetProvider) + ";Data Source=" + source;
}

StoreConnectionText ParseConnectionText(const std::string& text) {
  const Parts parts = PartReader(text).Read();
  CheckProvider(text, parts);
  for (const auto& [keyword, value] : parts) {
    if (!IsKnown(keyword)) ThrowBadText(text, "\"" + keyword + "\" is no known keyword");
    if (keyword == "jet oledb:database password" && !value.empty()) {
      ThrowBadText(text, "settings databases with a password do not exist here");
    }
  }
  const auto source = parts.find("data source");
  if (source == parts.end() || source->second.empty()) {
    ThrowBadText(text, "it names no Data Source, the file to open");
  }
  return StoreConnectionText{source->second};
}

}  // namespace vok
