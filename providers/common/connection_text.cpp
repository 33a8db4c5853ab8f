#include "providers/common/connection_text.h"

#include <algorithm>
#include <charconv>

#include "platform/failure.h"
#include "platform/text.h"

namespace vok::cube_text {
namespace {

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return lower;
}

[[noreturn]] void Fail(std::string_view text, const std::string& why) {
  throw Failure(failure_number::kUnspecified,
                "The connection text \"" + std::string(text) + "\" " + why + ".");
}

/// Takes the value off the front of `rest`, with the ";" behind it.
std::string TakeValue(std::string_view text, std::string_view& rest) {
  rest = rest.substr(std::min(rest.find_first_not_of(' '), rest.size()));
  std::string value;
  if (!rest.empty() && (rest[0] == '"' || rest[0] == '\'')) {
    const std::size_t end = rest.find(rest[0], 1);
    if (end == std::string_view::npos) Fail(text, "has a quote without end");
    value.assign(rest.substr(1, end - 1));
    rest.remove_prefix(end + 1);
  }
  const std::size_t semicolon = std::min(rest.find(';'), rest.size());
  if (value.empty()) value.assign(TrimBlanks(rest.substr(0, semicolon)));
  rest.remove_prefix(std::min(semicolon + 1, rest.size()));
  return value;
}

template <typename T>
T Limit(std::string_view text, const std::string& keyword, const std::string& value) {
  T limit{};
  const char* end = value.data() + value.size();
  const auto read = std::from_chars(value.data(), end, limit);
  if (read.ec != std::errc{} || read.ptr != end || !(limit > 0)) {
    Fail(text, "has \"" + value + "\" as " + keyword + ": give a number above 0");
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
  std::string_view rest = text;
  while (!TrimBlanks(rest).empty()) {
    const std::size_t equals = rest.find('=');
    if (equals == std::string_view::npos) Fail(text, "has a part without \"=\"");
    const std::string keyword = Lower(TrimBlanks(rest.substr(0, equals)));
    rest.remove_prefix(equals + 1);
    std::string value = TakeValue(text, rest);
    if (keyword == "provider") {
      parts.provider = std::move(value);
    } else if (keyword == "data source") {
      parts.data_source = std::move(value);
    } else if (keyword == "initial catalog") {
      parts.initial_catalog = WithoutBrackets(value);
    } else if (keyword == "max cells") {
      parts.max_cells = Limit<std::size_t>(text, keyword, value);
    } else if (keyword == "timeout") {
      parts.timeout_seconds = Limit<double>(text, keyword, value);
    }
  }
  return parts;
}

bool NamesServer(const ConnectionText& text) {
  const std::string start = Lower(std::string_view(text.data_source).substr(0, 8));
  return start.starts_with("http://") || start.starts_with("https://");
}

}  // namespace vok::cube_text
