// The text of a query, and failures that name a place in it.
#pragma once

#include <cstddef>
#include <string>

namespace vok::olap {

/// No text longer than this is read.
inline constexpr std::size_t kMaxMdxLength = std::size_t{4} << 20;

class SourceText {
 public:
  /// Failure -2147217900: longer than `kMaxMdxLength`.
  explicit SourceText(std::string text);

  const std::string& text() const { return text_; }
  /// Failure -2147217900: "MDX, line 1, column 20: " and what is wrong. Columns count characters.
  [[noreturn]] void Fail(std::size_t offset, const std::string& what) const;

 private:
  std::string text_;
};

}  // namespace vok::olap
