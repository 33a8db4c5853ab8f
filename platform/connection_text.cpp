#include "platform/connection_text.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "platform/failure.h"
#include "platform/shown_text.h"
#include "platform/text.h"

namespace vok {
namespace {

class PartReader {
 public:
  explicit PartReader(std::string_view text) : text_(text) {}

  ConnectionParts Read() {
    ConnectionParts parts;
    while (at_ < text_.size()) {
      const std::size_t end = std::min(text_.find_first_of("=;", at_), text_.size());
      const std::string keyword(TrimBlanks(text_.substr(at_, end - at_)));
      at_ = end + 1;
      if (end < text_.size() && text_[end] == '=') {
        if (keyword.empty()) ThrowBadConnectionText(text_, "a value stands without its keyword");
        parts.emplace_back(LowerAscii(keyword), ReadValue());
      } else if (!keyword.empty()) {
        // A password with a ";" in it ends at its "@".
        ThrowBadConnectionText(text_, "\"" + keyword.substr(keyword.rfind('@') + 1) +
                                          "\" has no value. A \";\" ends a part: rename a file or "
                                          "folder that has one in its name");
      }
    }
    return parts;
  }

 private:
  std::string ReadValue() {
    at_ = std::min(text_.find_first_not_of(' ', at_), text_.size());
    if (at_ < text_.size() && (text_[at_] == '"' || text_[at_] == '\'')) return ReadQuoted();
    return std::string(RestOfPart());
  }

  std::string ReadQuoted() {
    const char quote = text_[at_++];
    std::string value;
    for (;; ++at_) {
      if (at_ >= text_.size()) ThrowBadConnectionText(text_, "a quote is not closed");
      if (text_[at_] == quote && (++at_ >= text_.size() || text_[at_] != quote)) break;
      value += text_[at_];
    }
    if (!RestOfPart().empty()) {
      ThrowBadConnectionText(text_, "more text follows a closing quote");
    }
    return value;
  }

  std::string_view RestOfPart() {
    const std::size_t end = std::min(text_.find(';', at_), text_.size());
    const std::string_view rest = TrimBlanks(text_.substr(at_, end - at_));
    at_ = end + 1;
    return rest;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

ConnectionParts SplitConnectionText(std::string_view text) { return PartReader(text).Read(); }

void ThrowBadConnectionText(std::string_view text, const std::string& why) {
  throw Failure(failure_number::kUnspecified,
                "The connection text \"" + WithoutUsers(text) + "\" is not understood: " + why);
}

}  // namespace vok

namespace vok::cube_text {
namespace {

template <typename T>
T Limit(std::string_view text, const std::string& keyword, const std::string& value) {
  T limit{};
  const char* end = value.data() + value.size();
  const auto read = std::from_chars(value.data(), end, limit);
  if (read.ec != std::errc{} || read.ptr != end || !(limit > 0)) {
    ThrowBadConnectionText(
        text,
        "it has \"" + value + "\" as " + keyword + ": give a " +
            (read.ec == std::errc::result_out_of_range ? "smaller number" : "number above 0"));
  }
  return limit;
}

std::string WithoutBrackets(std::string_view name) {
  const bool bracketed = name.size() >= 2 && name.front() == '[' && name.back() == ']';
  return std::string(bracketed ? name.substr(1, name.size() - 2) : name);
}

}  // namespace

ConnectionText ParseConnectionText(std::string_view text) {
  ConnectionText parts;
  for (auto& [keyword, value] : SplitConnectionText(text)) {
    if (keyword == "provider") {
      parts.provider = std::move(value);
    } else if (keyword == "data source") {
      parts.data_source = std::move(value);
    } else if (keyword == "initial catalog") {
      parts.initial_catalog = WithoutBrackets(value);
    } else if (keyword == "max cells") {
      parts.max_cells = Limit<std::size_t>(text, keyword, value);
    } else if (keyword == "max memory") {
      parts.max_memory = Limit<std::size_t>(text, keyword, value);
    } else if (keyword == "timeout") {
      parts.timeout_seconds = Limit<double>(text, keyword, value);
    }
  }
  return parts;
}

bool NamesServer(const ConnectionText& text) {
  const std::string start = LowerAscii(std::string_view(text.data_source).substr(0, 8));
  return start.starts_with("http://") || start.starts_with("https://");
}

}  // namespace vok::cube_text
