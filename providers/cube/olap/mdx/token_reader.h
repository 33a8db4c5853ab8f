// One token of look-ahead over a lexer, for the parsers.
#pragma once

#include <string>
#include <string_view>

#include "providers/cube/olap/mdx/lexer.h"
#include "providers/cube/olap/mdx/syntax.h"

namespace vok::olap {

/// The same letters of the English alphabet without regard to case.
bool IsKeyword(std::string_view text, std::string_view keyword);

class TokenReader {
 public:
  TokenReader(const SourceText& source, std::size_t begin, bool quoted);

  const SourceText& source() const { return source_; }
  const Token& current() const { return current_; }
  Token Take();
  /// Reads on from there, where a formula in quotes ended.
  void MoveTo(std::size_t offset);

  bool AtSymbol(std::string_view symbol) const;
  bool AtKeyword(std::string_view keyword) const;
  bool SkipSymbol(std::string_view symbol);
  bool SkipKeyword(std::string_view keyword);
  void ExpectSymbol(std::string_view symbol);
  void ExpectKeyword(std::string_view keyword);
  /// Failure: `what` was expected, but the current token stands there.
  [[noreturn]] void Expected(const std::string& what) const;

  /// A name part, bracketed or not.
  NamePart ReadNamePart();
  /// Parts with "." between.
  Name ReadName();

 private:
  const SourceText& source_;
  Lexer lexer_;
  Token current_;
};

}  // namespace vok::olap
