#include "providers/recordset/criterion.h"

#include <charconv>
#include <optional>

#include "platform/failure.h"
#include "platform/text.h"

namespace vok::recordset {
namespace {

[[noreturn]] void ThrowBad(std::string_view text) {
  throw Failure(failure_number::kWrongArguments,
                "The criterion \"" + std::string(text) +
                    "\" is not understood: a field, =, and a number or a text in single quotes "
                    "are expected");
}

std::optional<double> NumberIn(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// The text between single quotes, which stand doubled inside.
std::optional<std::string> Unquoted(std::string_view text) {
  if (text.size() < 2 || !text.starts_with('\'') || !text.ends_with('\'')) return std::nullopt;
  text = text.substr(1, text.size() - 2);
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    plain += text[at];
    if (text[at] != '\'') continue;
    if (++at >= text.size() || text[at] != '\'') return std::nullopt;
  }
  return plain;
}

}  // namespace

Criterion::Criterion(std::string_view text) {
  const auto equals = text.find('=');
  if (equals == std::string_view::npos) ThrowBad(text);
  auto field = TrimBlanks(text.substr(0, equals));
  if (field.starts_with('[') && field.ends_with(']')) field = field.substr(1, field.size() - 2);
  if (field.empty() || field.find_first_of(" <>[]'") != std::string_view::npos) ThrowBad(text);
  field_ = field;

  const auto literal = TrimBlanks(text.substr(equals + 1));
  if (const auto number = NumberIn(literal)) {
    wanted_ = *number;
  } else if (auto quoted = Unquoted(literal)) {
    wanted_ = *std::move(quoted);
  } else {
    ThrowBad(text);
  }
}

bool Criterion::IsMet(const Locale& locale, const Value& value) const {
  const auto* text = value.As<std::string>();
  if (const auto* wanted = std::get_if<std::string>(&wanted_)) {
    return text != nullptr && EqualNoCase(locale, *text, *wanted);
  }
  if (value.IsNull() || value.IsEmpty()) return false;
  const auto number = text != nullptr ? NumberIn(TrimBlanks(*text)) : value.ToDouble();
  return number && *number == std::get<double>(wanted_);
}

}  // namespace vok::recordset
