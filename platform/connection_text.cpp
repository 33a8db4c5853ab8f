#include "platform/connection_text.h"

#include <charconv>
#include <utility>

#include "platform/connection_parts.h"
#include "platform/text.h"

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
