#include "providers/cube/olap/mdx/token_reader.h"

#include <algorithm>
#include <utility>

namespace vok::olap {
namespace {

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

bool IsKeyword(std::string_view text, std::string_view keyword) {
  return std::equal(text.begin(), text.end(), keyword.begin(), keyword.end(),
                    [](char a, char b) { return Upper(a) == Upper(b); });
}

TokenReader::TokenReader(const SourceText& source, std::size_t begin, bool quoted)
    : source_(source), lexer_(source, begin, quoted), current_(lexer_.Next()) {}

Token TokenReader::Take() { return std::exchange(current_, lexer_.Next()); }

void TokenReader::MoveTo(std::size_t offset) {
  lexer_.MoveTo(offset);
  current_ = lexer_.Next();
}

bool TokenReader::AtSymbol(std::string_view symbol) const {
  return current_.kind == TokenKind::kSymbol && current_.text == symbol;
}

bool TokenReader::AtKeyword(std::string_view keyword) const {
  return current_.kind == TokenKind::kName && IsKeyword(current_.text, keyword);
}

bool TokenReader::SkipSymbol(std::string_view symbol) {
  if (!AtSymbol(symbol)) return false;
  Take();
  return true;
}

bool TokenReader::SkipKeyword(std::string_view keyword) {
  if (!AtKeyword(keyword)) return false;
  Take();
  return true;
}

void TokenReader::ExpectSymbol(std::string_view symbol) {
  if (!SkipSymbol(symbol)) Expected('"' + std::string(symbol) + '"');
}

void TokenReader::ExpectKeyword(std::string_view keyword) {
  if (!SkipKeyword(keyword)) Expected('"' + std::string(keyword) + '"');
}

void TokenReader::Expected(const std::string& what) const {
  source_.Fail(current_.begin, "expected " + what + " but found " + Describe(current_));
}

NamePart TokenReader::ReadNamePart() {
  if (AtSymbol("&")) source_.Fail(current_.begin, "not supported: member keys (\"&\")");
  if (current_.kind != TokenKind::kName && current_.kind != TokenKind::kBracketedName) {
    Expected("a name");
  }
  Token token = Take();
  return {std::move(token.text), token.kind == TokenKind::kBracketedName, token.begin};
}

Name TokenReader::ReadName() {
  Name name = {ReadNamePart()};
  while (SkipSymbol(".")) name.push_back(ReadNamePart());
  return name;
}

}  // namespace vok::olap
