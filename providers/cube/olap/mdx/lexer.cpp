#include "providers/cube/olap/mdx/lexer.h"

#include <array>
#include <string_view>

namespace vok::olap {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool StartsName(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f'; }

constexpr std::array<std::string_view, 4> kLongSymbols = {"<>", "<=", ">=", "||"};
constexpr std::string_view kSymbols = "{}(),.:*+-/=<>&";

}  // namespace

std::string Describe(const Token& token) {
  switch (token.kind) {
    case TokenKind::kEnd:
      return "the end of the text";
    case TokenKind::kBracketedName:
      return "\"[" + token.text + "]\"";
    case TokenKind::kString:
      return "the text \"" + token.text + "\"";
    default:
      return "\"" + token.text + "\"";
  }
}

Lexer::Lexer(const SourceText& source, std::size_t begin, bool quoted)
    : source_(source), at_(begin), quoted_(quoted) {}

bool Lexer::AtDoubledQuote() const { return source_.text().compare(at_, 2, "''") == 0; }

bool Lexer::AtEnd() const {
  if (at_ >= source_.text().size()) return true;
  return quoted_ && !in_brackets_ && source_.text()[at_] == '\'' && !AtDoubledQuote();
}

std::size_t Lexer::Width() const { return quoted_ && !AtEnd() && AtDoubledQuote() ? 2 : 1; }

char Lexer::PeekSecond() const {
  const std::size_t second = at_ + Width();
  return second < source_.text().size() ? source_.text()[second] : '\0';
}

char Lexer::Take() {
  const char c = Peek();
  at_ += Width();
  return c;
}

Token Lexer::Next() {
  SkipBlanksAndComments();
  Token token;
  token.begin = at_;
  const char c = Peek();
  if (AtEnd()) {
    token.kind = TokenKind::kEnd;
  } else if (c == '[') {
    token.kind = TokenKind::kBracketedName;
    in_brackets_ = true;
    ReadDelimited(token, ']');
    in_brackets_ = false;
  } else if (c == '\'' || c == '"') {
    token.kind = TokenKind::kString;
    token.quote = c;
    ReadDelimited(token, c);
  } else if (IsDigit(c) || (c == '.' && IsDigit(PeekSecond()))) {
    ReadNumber(token);
  } else if (StartsName(c)) {
    ReadName(token);
  } else {
    ReadSymbol(token);
  }
  token.end = at_;
  return token;
}

void Lexer::SkipBlanksAndComments() {
  while (!AtEnd()) {
    const char c = Peek();
    const char second = PeekSecond();
    if (IsBlank(c)) {
      Take();
    } else if ((c == '-' && second == '-') || (c == '/' && second == '/')) {
      SkipLineComment();
    } else if (c == '/' && second == '*') {
      SkipBlockComment();
    } else {
      return;
    }
  }
}

void Lexer::SkipLineComment() {
  while (!AtEnd() && Peek() != '\n' && Peek() != '\r') Take();
}

void Lexer::SkipBlockComment() {
  const std::size_t begin = at_;
  Take();
  Take();
  while (!AtEnd() && !(Peek() == '*' && PeekSecond() == '/')) Take();
  if (AtEnd()) source_.Fail(begin, "the comment has no end (\"*/\")");
  Take();
  Take();
}

void Lexer::ReadDelimited(Token& token, char closing) {
  Take();
  while (!AtEnd()) {
    const char c = Take();
    if (c == closing) {
      if (Peek() != closing) return;
      Take();
    }
    token.text += c;
  }
  source_.Fail(token.begin, closing == ']' ? "the name has no end (\"]\")"
                                           : std::string("the text has no end (") + closing + ")");
}

void Lexer::ReadNumber(Token& token) {
  token.kind = TokenKind::kNumber;
  while (IsDigit(Peek())) token.text += Take();
  if (Peek() == '.' && IsDigit(PeekSecond())) {
    token.text += Take();
    while (IsDigit(Peek())) token.text += Take();
  }
  if (Peek() != 'e' && Peek() != 'E') return;
  const std::size_t exponent = at_;
  std::string written(1, Take());
  if (Peek() == '+' || Peek() == '-') written += Take();
  if (!IsDigit(Peek())) {
    at_ = exponent;
    return;
  }
  while (IsDigit(Peek())) written += Take();
  token.text += written;
}

void Lexer::ReadName(Token& token) {
  token.kind = TokenKind::kName;
  while (StartsName(Peek()) || IsDigit(Peek()) || Peek() == '$') token.text += Take();
}

void Lexer::ReadSymbol(Token& token) {
  token.kind = TokenKind::kSymbol;
  const std::string_view rest = std::string_view(source_.text()).substr(at_);
  for (const std::string_view symbol : kLongSymbols) {
    if (rest.starts_with(symbol)) token.text = symbol;
  }
  if (token.text.empty()) {
    if (kSymbols.find(Peek()) == std::string_view::npos) {
      source_.Fail(at_, std::string("the character \"") + Peek() + "\" has no meaning here");
    }
    token.text = Peek();
  }
  at_ += token.text.size();
}

}  // namespace vok::olap
