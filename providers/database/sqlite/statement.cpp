#include "providers/database/sqlite/statement.h"

#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

constexpr std::size_t kMostShown = 200;  // units of a statement in a failure's text

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool IsNameByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  Statement Parse() {
    if (text_.size() > kLongestStatement) {
      Fail("at most " + std::to_string(kLongestStatement) + " bytes were expected");
    }
    Statement statement;
    if (TakeWord("select")) {
      statement.columns = ParseColumns();
      Expect("from");
    } else if (TakeWord("delete")) {
      statement.kind = Statement::Kind::kDelete;
      TakeMark('*');
      Expect("from");
    } else {
      statement.table = ParseName("select, delete or a table's name");
      ExpectEnd();
      return statement;
    }
    statement.table = ParseName("a table's name");
    if (TakeWord("where")) statement.filter = ParseFilter();
    ExpectEnd();
    return statement;
  }

 private:
  std::vector<std::string> ParseColumns() {
    if (TakeMark('*')) return {};
    std::vector<std::string> columns;
    do {
      columns.push_back(ParseName("* or a column's name"));
    } while (TakeMark(','));
    return columns;
  }

  TextFilter ParseFilter() {
    TextFilter filter;
    filter.column = ParseName("a column's name");
    filter.is_pattern = TakeWord("like");
    if (!filter.is_pattern && !TakeMark('=')) Fail("\"like\" or \"=\" was expected");
    if (!TakeMark('\'')) Fail("a text in single quotes was expected");
    filter.text = TakeUpToQuote();
    while (!filter.is_pattern && at_ < text_.size() && text_[at_] == '\'') {
      ++at_;
      filter.text += '\'' + TakeUpToQuote();
    }
    return filter;
  }

  std::string TakeUpToQuote() {
    const std::size_t end = text_.find('\'', at_);
    if (end == std::string_view::npos) Fail("the closing single quote is missing");
    std::string taken(text_.substr(at_, end - at_));
    at_ = end + 1;
    return taken;
  }

  std::string ParseName(const std::string& expected) {
    if (TakeMark('[')) {
      const std::size_t end = text_.find(']', at_);
      if (end == std::string_view::npos) Fail("the closing bracket is missing");
      std::string name(text_.substr(at_, end - at_));
      if (name.empty()) Fail(expected + " was expected");
      at_ = end + 1;
      return name;
    }
    std::string name(PeekWord());
    if (name.empty() || (name[0] >= '0' && name[0] <= '9')) Fail(expected + " was expected");
    at_ += name.size();
    return name;
  }

  std::string_view PeekWord() {
    SkipBlanks();
    std::size_t end = at_;
    while (end < text_.size() && IsNameByte(text_[end])) ++end;
    return text_.substr(at_, end - at_);
  }

  bool TakeWord(std::string_view keyword) {
    const std::string_view word = PeekWord();
    if (!EqualNoCaseAscii(word, keyword)) return false;
    at_ += word.size();
    return true;
  }

  bool TakeMark(char mark) {
    SkipBlanks();
    if (at_ >= text_.size() || text_[at_] != mark) return false;
    ++at_;
    return true;
  }

  void Expect(const std::string& keyword) {
    if (!TakeWord(keyword)) Fail("\"" + keyword + "\" was expected");
  }

  void ExpectEnd() {
    TakeMark(';');
    SkipBlanks();
    if (at_ < text_.size()) Fail("the end of the statement was expected");
  }

  void SkipBlanks() {
    while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
  }

  [[noreturn]] void Fail(const std::string& what) const {
    throw Failure(failure_number::kSyntax,
                  "Syntax error in the statement \"" + std::string(Utf16Prefix(text_, kMostShown)) +
                      "\" at character " + std::to_string(Utf16Length(text_.substr(0, at_)) + 1) +
                      ": " + what + ".");
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

Statement ParseStatement(std::string_view text) { return Parser(text).Parse(); }

}  // namespace vok
