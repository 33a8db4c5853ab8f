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
  /// Reads `source` from `begin` on. Within a formula in quotes (`quoted`) every ' is written
  /// twice: a single one is the end, except in the brackets of a name.
  Lexer(const SourceText& source, std::size_t begin, bool quoted);

  /// Failure -2147217900: a character that starts no token, or a name, string or comment without
  /// end.
  Token Next();
  /// Reads on from there.
  void MoveTo(std::size_t offset) { at_ = offset; }

 private:
  bool AtEnd() const;
  char Peek() const { return AtEnd() ? '\0' : source_.text()[at_]; }
  char PeekSecond() const;
  bool AtDoubledQuote() const;
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
  bool quoted_;
  bool in_brackets_ = false;
};

}  // namespace vok::olap
