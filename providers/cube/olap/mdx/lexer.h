// Cuts a query, or a quoted formula within it, into tokens. Offsets always count in the whole text.
#pragma once

#include <cstddef>
#include <string>

#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

enum class TokenKind { kEnd, kName, kBracketedName, kNumber, kString, kSymbol };

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string text;       ///< decoded: without brackets or quotes, doubled ones made single
  std::size_t begin = 0;  ///< of the token as written
  std::size_t end = 0;
  char quote = 0;  ///< of a string
};

/// The token as a message shows it.
std::string Describe(const Token& token);

class Lexer {
 public:
  /// Reads `source` from `begin` to `end`. Within a formula in quotes (`quoted`) every ' is written
  /// twice.
  Lexer(const SourceText& source, std::size_t begin, std::size_t end, bool quoted);

  /// Failure -2147217900: a character that starts no token, or a name, string or comment without
  /// end.
  Token Next();

 private:
  bool AtEnd() const { return at_ >= end_; }
  char Peek() const { return AtEnd() ? '\0' : source_.text()[at_]; }
  char PeekSecond() const;
  std::size_t Width() const;
  char Take();
  void SkipBlanksAndComments();
  void SkipLineComment();
  void SkipBlockComment();
  void ReadDelimited(Token& token, char closing);
  void ReadNumber(Token& token);
  void ReadName(Token& token);
  void ReadSymbol(Token& token);

  const SourceText& source_;
  std::size_t at_;
  std::size_t end_;
  bool quoted_;
};

}  // namespace vok::olap
