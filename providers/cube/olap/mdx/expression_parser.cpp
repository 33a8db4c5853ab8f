#include "providers/cube/olap/mdx/expression_parser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <initializer_list>
#include <span>
#include <utility>

#include "providers/cube/olap/mdx/parser.h"

namespace vok::olap {
namespace {

/// Operators from the loosest to the tightest; NOT stands between the second and the third row.
constexpr std::string_view kOr[] = {"OR", "XOR"};
constexpr std::string_view kAnd[] = {"AND"};
constexpr std::string_view kCompare[] = {"=", "<>", "<=", ">=", "<", ">", "IS"};
constexpr std::string_view kAdd[] = {"+", "-", "||"};
constexpr std::string_view kMultiply[] = {"*", "/"};
constexpr std::string_view kRange[] = {":"};

class ExpressionParser {
 public:
  explicit ExpressionParser(TokenReader& tokens) : tokens_(tokens) {}

  Syntax Expression() {
    const Nested nested(*this);
    return Binary<&ExpressionParser::And>(kOr);
  }

 private:
  /// Counts the nesting while it lives.
  class Nested {
   public:
    explicit Nested(ExpressionParser& parser) : parser_(parser) {
      if (++parser_.nesting_ > kMaxNesting) {
        parser_.tokens_.source().Fail(
            parser_.tokens_.current().begin,
            "expressions nest more than " + std::to_string(kMaxNesting) + " deep");
      }
    }
    ~Nested() { --parser_.nesting_; }
    Nested(const Nested&) = delete;
    Nested& operator=(const Nested&) = delete;

   private:
    ExpressionParser& parser_;
  };

  Syntax And() { return Binary<&ExpressionParser::Not>(kAnd); }
  Syntax Compare() { return Binary<&ExpressionParser::Add>(kCompare); }
  Syntax Add() { return Binary<&ExpressionParser::Multiply>(kAdd); }
  Syntax Multiply() { return Binary<&ExpressionParser::Minus>(kMultiply); }
  Syntax Range() { return Binary<&ExpressionParser::Postfix>(kRange); }

  Syntax Not() {
    if (!tokens_.AtKeyword("NOT")) return Compare();
    const Nested nested(*this);
    const std::size_t offset = tokens_.Take().begin;
    return Make(SyntaxKind::kUnary, offset, "NOT", Of(Not()));
  }

  Syntax Minus() {
    if (!tokens_.AtSymbol("-") && !tokens_.AtSymbol("+")) return Range();
    const Nested nested(*this);
    const Token sign = tokens_.Take();
    Syntax operand = Minus();
    if (sign.text == "+") return operand;
    return Make(SyntaxKind::kUnary, sign.begin, "-", Of(std::move(operand)));
  }

  template <Syntax (ExpressionParser::*Operand)()>
  Syntax Binary(std::span<const std::string_view> operators) {
    Syntax left = (this->*Operand)();
    for (;;) {
      const auto found =
          std::find_if(operators.begin(), operators.end(), [this](std::string_view candidate) {
            return tokens_.AtSymbol(candidate) || tokens_.AtKeyword(candidate);
          });
      if (found == operators.end()) return left;
      const std::size_t offset = tokens_.Take().begin;
      std::vector<Syntax> operands = Of(std::move(left));
      operands.push_back((this->*Operand)());
      left = Make(SyntaxKind::kBinary, offset, std::string(*found), std::move(operands));
    }
  }

  Syntax Postfix() {
    Syntax base = Primary();
    while (tokens_.SkipSymbol(".")) {
      NamePart part = tokens_.ReadNamePart();
      if (tokens_.AtSymbol("(") && !part.bracketed) {
        std::vector<Syntax> arguments = Of(std::move(base));
        for (Syntax& argument : Arguments()) arguments.push_back(std::move(argument));
        base = Make(SyntaxKind::kProperty, part.offset, part.text, std::move(arguments));
      } else if (base.kind == SyntaxKind::kName) {
        base.name.push_back(std::move(part));
        Grow(base, base.name.size());
      } else if (!part.bracketed) {
        base = Make(SyntaxKind::kProperty, part.offset, part.text, Of(std::move(base)));
      } else {
        tokens_.source().Fail(part.offset, "only a name can be followed by " + ToText(Name{part}) +
                                               ", not an expression");
      }
    }
    return base;
  }

  Syntax Primary() {
    const Token& token = tokens_.current();
    const std::size_t offset = token.begin;
    switch (token.kind) {
      case TokenKind::kNumber:
        return Number();
      case TokenKind::kString:
        return Make(SyntaxKind::kText, offset, tokens_.Take().text, {});
      case TokenKind::kName:
        if (tokens_.AtKeyword("CASE")) return Case();
        return NameOrCall();
      case TokenKind::kBracketedName:
        return NameOrCall();
      default:
        break;
    }
    if (tokens_.AtSymbol("{")) return Make(SyntaxKind::kSet, offset, "", Listed("{", "}", true));
    if (tokens_.AtSymbol("(")) return Parenthesised();
    tokens_.Expected("an expression");
  }

  /// A tuple, or one expression as it is.
  Syntax Parenthesised() {
    const std::size_t offset = tokens_.current().begin;
    std::vector<Syntax> items = Listed("(", ")", false);
    if (items.size() == 1) return std::move(items[0]);
    return Make(SyntaxKind::kTuple, offset, "", std::move(items));
  }

  Syntax Number() {
    const Token token = tokens_.Take();
    Syntax number = Make(SyntaxKind::kNumber, token.begin, "", {});
    const char* end = token.text.data() + token.text.size();
    if (std::from_chars(token.text.data(), end, number.number).ec != std::errc{}) {
      tokens_.source().Fail(token.begin, "the number " + token.text + " is too large");
    }
    return number;
  }

  Syntax NameOrCall() {
    NamePart part = tokens_.ReadNamePart();
    if (!part.bracketed && tokens_.AtSymbol("(")) {
      return Make(SyntaxKind::kCall, part.offset, part.text, Arguments());
    }
    Syntax name = Make(SyntaxKind::kName, part.offset, "", {});
    name.name.push_back(std::move(part));
    return name;
  }

  Syntax Case() {
    const std::size_t offset = tokens_.Take().begin;
    std::vector<Syntax> parts;
    const bool has_operand = !tokens_.AtKeyword("WHEN");
    if (has_operand) parts.push_back(Expression());
    if (!tokens_.AtKeyword("WHEN")) tokens_.Expected("\"WHEN\"");
    while (tokens_.SkipKeyword("WHEN")) {
      parts.push_back(Expression());
      tokens_.ExpectKeyword("THEN");
      parts.push_back(Expression());
    }
    if (tokens_.SkipKeyword("ELSE")) parts.push_back(Expression());
    tokens_.ExpectKeyword("END");
    return Make(SyntaxKind::kCase, offset, has_operand ? "CASE OF" : "CASE", std::move(parts));
  }

  std::vector<Syntax> Arguments() { return Listed("(", ")", true); }

  /// One item of a list. Between two commas there may be none: a name without parts.
  Syntax Item() {
    if (!tokens_.AtSymbol(",")) return Expression();
    return Make(SyntaxKind::kName, tokens_.current().begin, "", {});
  }

  std::vector<Syntax> Listed(std::string_view open, std::string_view close, bool may_be_empty) {
    tokens_.ExpectSymbol(open);
    std::vector<Syntax> items;
    if (may_be_empty && tokens_.SkipSymbol(close)) return items;
    do {
      items.push_back(open == "(" && may_be_empty && !items.empty() ? Item() : Expression());
    } while (tokens_.SkipSymbol(","));
    tokens_.ExpectSymbol(close);
    return items;
  }

  static std::vector<Syntax> Of(Syntax&& one) {
    std::vector<Syntax> list;
    list.push_back(std::move(one));
    return list;
  }

  Syntax Make(SyntaxKind kind, std::size_t offset, std::string text,
              std::vector<Syntax> arguments) {
    Syntax syntax;
    syntax.kind = kind;
    syntax.offset = offset;
    syntax.text = std::move(text);
    std::size_t depth = 0;
    for (const Syntax& argument : arguments) depth = std::max<std::size_t>(depth, argument.depth);
    // Each WHEN stands in what the one before it leaves.
    depth += kind == SyntaxKind::kCase ? arguments.size() / 2 + 1 : 1;
    syntax.arguments = std::move(arguments);
    Grow(syntax, depth);
    return syntax;
  }

  void Grow(Syntax& syntax, std::size_t depth) const {
    if (depth > kMaxTreeDepth) {
      tokens_.source().Fail(
          syntax.offset,
          "the expression has more than " + std::to_string(kMaxTreeDepth) + " operations in a row");
    }
    syntax.depth = static_cast<uint32_t>(depth);
  }

  TokenReader& tokens_;
  uint32_t nesting_ = 0;
};

}  // namespace

Syntax ParseExpression(TokenReader& tokens) { return ExpressionParser(tokens).Expression(); }

Syntax ParseFormula(TokenReader& tokens) {
  const Token& token = tokens.current();
  if (token.kind != TokenKind::kString || token.quote != '\'') return ParseExpression(tokens);
  // The token may be too short: in the brackets of a name ' does not end the formula.
  TokenReader inner(tokens.source(), token.begin + 1, true);
  Syntax formula = ParseExpression(inner);
  if (inner.current().kind != TokenKind::kEnd) inner.Expected("the end of the formula");
  tokens.MoveTo(inner.current().end + 1);
  return formula;
}

}  // namespace vok::olap
