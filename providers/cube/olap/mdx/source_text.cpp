#include "providers/cube/olap/mdx/source_text.h"

#include <algorithm>
#include <utility>

#include "platform/utf8.h"

namespace vok::olap {
SourceText::SourceText(std::string text, std::string title)
    : text_(std::move(text)), title_(std::move(title)) {
  if (text_.size() > kMaxMdxLength) {
    throw Failure(failure_number::kSyntax,
                  "MDX of " + std::to_string(text_.size()) + " bytes: the limit is " +
                      std::to_string(kMaxMdxLength) + ". Ask in several queries.");
  }
}

Failure SourceText::FailureOf(std::size_t offset, const std::string& what) const {
  const std::size_t end = std::min(offset, text_.size());
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t i = 0; i < end; ++i) {
    const bool line_end =
        text_[i] == '\n' || (text_[i] == '\r' && (i + 1 >= end || text_[i + 1] != '\n'));
    if (line_end) {
      ++line;
      column = 1;
    } else if (StartsCharacter(text_[i])) {
      ++column;
    }
  }
  return Failure(failure_number::kSyntax, title_ + ", line " + std::to_string(line) + ", column " +
                                              std::to_string(column) + ": " + what);
}

}  // namespace vok::olap
