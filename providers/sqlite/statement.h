// The few forms of statements that settings are read and deleted with.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vok {

/// Where [column] like 'pattern'.
struct LikeFilter {
  std::string column;
  std::string pattern;
};

struct Statement {
  enum class Kind { kSelect, kDelete };
  Kind kind = Kind::kSelect;
  std::vector<std::string> columns;  ///< empty: all of them
  std::string table;
  std::optional<LikeFilter> filter;
};

inline constexpr std::size_t kLongestStatement = 64000;  // bytes

/// Reads
///   select * | column[, column …] from table [where column like 'pattern']
///   delete [*] from table [where column like 'pattern']
///   table
/// Keywords without regard to case; names plain or in brackets; blanks, line ends and one ";" may
/// follow. A pattern ends at the next single quote, there is no way to write one inside. Anything
/// else fails with -2147217900, saying where and what was expected.
Statement ParseStatement(std::string_view text);

}  // namespace vok
