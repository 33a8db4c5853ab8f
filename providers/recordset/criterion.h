// A criterion that rows are filtered and searched by: "field = 1", "[field]='text'".
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "platform/locale.h"
#include "platform/value.h"

namespace vok::recordset {

/// One field, "=", and a number or a text in single quotes (doubled inside).
class Criterion {
 public:
  /// Failure 3001 for any other text.
  explicit Criterion(std::string_view text);

  const std::string& field() const { return field_; }
  /// A number equals a number, and a text that writes it; a text equals a text without regard to
  /// case. NULL equals nothing.
  bool IsMet(const Locale& locale, const Value& value) const;

 private:
  std::string field_;
  std::variant<double, std::string> wanted_;
};

}  // namespace vok::recordset
