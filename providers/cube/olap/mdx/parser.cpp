#include "providers/cube/olap/mdx/parser.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "providers/cube/olap/mdx/expression_parser.h"
#include "providers/cube/olap/mdx/token_reader.h"

namespace vok::olap {
namespace {

constexpr std::array<std::string_view, 5> kAxisNames = {"COLUMNS", "ROWS", "PAGES", "CHAPTERS",
                                                        "SECTIONS"};
constexpr uint32_t kMaxAxes = 128;

class StatementParser {
 public:
  explicit StatementParser(const SourceText& source) : source_(source), tokens_(source, 0, false) {}

  Statement Run() {
    if (tokens_.SkipKeyword("WITH")) Definitions();
    tokens_.ExpectKeyword("SELECT");
    if (!tokens_.AtKeyword("FROM")) Axes();
    tokens_.ExpectKeyword("FROM");
    if (tokens_.AtSymbol("(")) {
      source_.Fail(tokens_.current().begin, "not supported: SELECT within FROM");
    }
    statement_.cube = tokens_.ReadNamePart();
    if (tokens_.SkipKeyword("WHERE")) statement_.slicer = ParseExpression(tokens_);
    if (tokens_.SkipKeyword("CELL")) statement_.cell_properties = Properties();
    if (tokens_.current().kind != TokenKind::kEnd) tokens_.Expected("the end of the query");
    return std::move(statement_);
  }

 private:
  void Definitions() {
    if (!tokens_.AtKeyword("MEMBER") && !tokens_.AtKeyword("SET")) {
      tokens_.Expected("\"MEMBER\" or \"SET\"");
    }
    for (;;) {
      if (tokens_.SkipKeyword("MEMBER")) {
        statement_.members.push_back(Member());
      } else if (tokens_.SkipKeyword("SET")) {
        statement_.sets.push_back(Set());
      } else {
        return;
      }
    }
  }

  MemberDefinition Member() {
    MemberDefinition member;
    member.name = tokens_.ReadName();
    tokens_.ExpectKeyword("AS");
    member.formula = ParseFormula(tokens_);
    while (tokens_.SkipSymbol(",")) {
      NamePart property = tokens_.ReadNamePart();
      tokens_.ExpectSymbol("=");
      member.properties.emplace_back(std::move(property), ParseExpression(tokens_));
    }
    return member;
  }

  SetDefinition Set() {
    SetDefinition set;
    set.name = tokens_.ReadNamePart();
    tokens_.ExpectKeyword("AS");
    set.formula = ParseFormula(tokens_);
    return set;
  }

  void Axes() {
    do {
      Axis();
    } while (tokens_.SkipSymbol(","));
    auto& axes = statement_.axes;
    std::sort(axes.begin(), axes.end(),
              [](const AxisSyntax& a, const AxisSyntax& b) { return a.ordinal < b.ordinal; });
    for (uint32_t i = 0; i < axes.size(); ++i) {
      if (axes[i].ordinal != i) {
        source_.Fail(axes[i].set.offset, "there is an axis " + std::to_string(axes[i].ordinal) +
                                             ", but no axis " + std::to_string(i));
      }
    }
  }

  void Axis() {
    AxisSyntax axis;
    if (tokens_.SkipKeyword("NON")) {
      tokens_.ExpectKeyword("EMPTY");
      axis.non_empty = true;
    }
    axis.set = ParseExpression(tokens_);
    if (tokens_.AtKeyword("DIMENSION") || tokens_.AtKeyword("PROPERTIES")) {
      tokens_.SkipKeyword("DIMENSION");
      axis.properties = Properties();
    }
    tokens_.ExpectKeyword("ON");
    const std::size_t offset = tokens_.current().begin;
    axis.ordinal = AxisOrdinal();
    for (const AxisSyntax& other : statement_.axes) {
      if (other.ordinal == axis.ordinal) {
        source_.Fail(offset, "axis " + std::to_string(axis.ordinal) + " is given twice");
      }
    }
    statement_.axes.push_back(std::move(axis));
  }

  uint32_t AxisOrdinal() {
    for (uint32_t i = 0; i < kAxisNames.size(); ++i) {
      if (tokens_.SkipKeyword(kAxisNames[i])) return i;
    }
    if (!tokens_.SkipKeyword("AXIS")) return AxisNumber();
    tokens_.ExpectSymbol("(");
    const uint32_t ordinal = AxisNumber();
    tokens_.ExpectSymbol(")");
    return ordinal;
  }

  uint32_t AxisNumber() {
    const Token& token = tokens_.current();
    const bool digits = token.kind == TokenKind::kNumber && token.text.size() <= 3 &&
                        std::all_of(token.text.begin(), token.text.end(),
                                    [](char c) { return c >= '0' && c <= '9'; });
    if (!digits) tokens_.Expected("an axis (COLUMNS, ROWS, PAGES, CHAPTERS, SECTIONS or a number)");
    uint32_t ordinal = 0;
    for (const char c : token.text) ordinal = ordinal * 10 + static_cast<uint32_t>(c - '0');
    if (ordinal >= kMaxAxes) {
      source_.Fail(token.begin, "more than " + std::to_string(kMaxAxes) + " axes");
    }
    tokens_.Take();
    return ordinal;
  }

  std::vector<Name> Properties() {
    std::vector<Name> names;
    tokens_.ExpectKeyword("PROPERTIES");
    do {
      names.push_back(tokens_.ReadName());
    } while (tokens_.SkipSymbol(","));
    return names;
  }

  const SourceText& source_;
  TokenReader tokens_;
  Statement statement_;
};

}  // namespace

Statement Parse(const SourceText& source) { return StatementParser(source).Run(); }

}  // namespace vok::olap
