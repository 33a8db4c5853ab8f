// The few forms of statements that settings are read and deleted with.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vok {

/// Where [column] like 'pattern', or where [column] = 'text'.
struct TextFilter {
  std::string column;
  std::string text;
  bool is_pattern = true;
};

struct Statement {
  enum class Kind { kSelect, kDelete };
  Kind kind = Kind::kSelect;
  std::vector<std::string> columns;  ///< empty: all of them
  std::string table;
  std::optional<TextFilter> filter;
};

inline constexpr std::size_t kLongestStatement = 64000;  // bytes

/// Reads
///   select * | column[, column …] from table [where column like 'pattern' | column = 'text']
///   delete [*] from table [where column like 'pattern' | column = 'text']
///   table
/// Keywords without regard to case; names plain or in brackets; blanks, line ends and one ";" may
/// follow. A pattern ends at the next single quote, there is no way to write one inside; in a text
/// it is doubled. Anything else fails with -2147217900, saying where and what was expected.
Statement ParseStatement(std::string_view text);

}  // namespace vok
