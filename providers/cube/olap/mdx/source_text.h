// The text of a query, and failures that name a place in it.
#pragma once

#include <cstddef>
#include <string>

#include "platform/failure.h"

namespace vok::olap {

/// No text longer than this is read.
inline constexpr std::size_t kMaxMdxLength = std::size_t{4} << 20;

class SourceText {
 public:
  /// `title` opens the failures. Failure -2147217900: longer than `kMaxMdxLength`.
  explicit SourceText(std::string text, std::string title = "MDX");

  const std::string& text() const { return text_; }
  /// Failure -2147217900: "MDX, line 1, column 20: " and what is wrong. Columns count characters.
  Failure FailureOf(std::size_t offset, const std::string& what) const;
  [[noreturn]] void Fail(std::size_t offset, const std::string& what) const {
    throw FailureOf(offset, what);
  }

 private:
  std::string text_;
  std::string title_;
};

/// Where something was written, for failures that show only on evaluation. The text outlives it.
struct Place {
  const SourceText* source = nullptr;
  std::size_t offset = 0;

  Failure FailureOf(const std::string& what) const { return source->FailureOf(offset, what); }
  [[noreturn]] void Fail(const std::string& what) const { throw FailureOf(what); }
};

}  // namespace vok::olap
