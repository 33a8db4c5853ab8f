#include "tests/interop/xmla_answer.h"

#include <expat.h>

#include <charconv>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace vok::interop {
namespace {

double ToNumber(const std::string& text) {
  if (text == "Infinity" || text == "INF") return std::numeric_limits<double>::infinity();
  if (text == "-Infinity" || text == "-INF") return -std::numeric_limits<double>::infinity();
  if (text == "NaN") return std::numeric_limits<double>::quiet_NaN();
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw std::runtime_error("The server sent a number that is none: " + text);
  }
  return number;
}

Value ToCell(const std::string& type, const std::string& text) {
  constexpr std::string_view kError = "mondrian.olap.fun.MondrianEvaluationException";
  if (text.starts_with(kError)) return CellError{text};
  if (type == "xsd:string") return text;
  if (type == "xsd:boolean") return text == "true";
  return ToNumber(text);
}

/// Follows the elements of the answer. Names come as the server writes them, prefixes included.
class Reader {
 public:
  Answer Take() {
    if (!found_ && answer_.failure.empty()) {
      throw std::runtime_error("The server sent neither axes nor a fault");
    }
    return std::move(answer_);
  }

  void Start(std::string_view name, const char** attributes) {
    text_.clear();
    if (name == "Axis") StartAxis(Attribute(attributes, "name"));
    if (name == "Tuple" && axis_ != nullptr) axis_->emplace_back();
    if (name == "Member" && axis_ != nullptr) axis_->back().emplace_back();
    if (name == "CellData") {
      in_cells_ = true;  // elements of the same names stand before it, in the description of cells
      answer_.SizeCells();
    }
    if (name == "Cell")
      ordinal_ = static_cast<std::size_t>(ToNumber(Attribute(attributes, "CellOrdinal")));
    if (name == "Value") type_ = Attribute(attributes, "xsi:type");
  }

  void End(std::string_view name) {
    if (name == "faultstring" || name == "desc") {
      answer_.failure += (answer_.failure.empty() ? "" : ": ") + text_;
    } else if (name == "Axis") {
      axis_ = nullptr;
    } else if (axis_ != nullptr && !axis_->empty() && !axis_->back().empty()) {
      EndOfMember(name, axis_->back().back());
    } else if (in_cells_ && name == "Value") {
      answer_.cells.at(ordinal_) = ToCell(type_, text_);
    } else if (in_cells_ && name == "FmtValue") {
      answer_.formatted.at(ordinal_) = text_;
    }
  }

  void Text(std::string_view text) { text_ += text; }

 private:
  void StartAxis(const std::string& name) {
    found_ = true;
    if (name != "SlicerAxis") axis_ = &answer_.axes.emplace_back();
  }

  void EndOfMember(std::string_view name, Member& member) {
    if (name == "UName") member.unique_name = text_;
    if (name == "Caption") member.caption = text_;
    if (name == "LName") member.level = text_;
  }

  static std::string Attribute(const char** attributes, std::string_view name) {
    for (; *attributes != nullptr; attributes += 2) {
      if (*attributes == name) return attributes[1];
    }
    return {};
  }

  Answer answer_;
  std::vector<Tuple>* axis_ = nullptr;
  bool found_ = false;
  bool in_cells_ = false;
  std::size_t ordinal_ = 0;
  std::string type_;
  std::string text_;
};

/// Runs a step of the reader; an exception must not pass through the C code that calls it.
struct Parsing {
  Reader reader;
  XML_Parser parser = nullptr;
  std::string failure;

  template <typename Step>
  void Guard(Step step) {
    try {
      if (failure.empty()) step();
    } catch (const std::exception& error) {
      failure = error.what();
      XML_StopParser(parser, XML_FALSE);
    }
  }
};

void OnStart(void* data, const char* name, const char** attributes) {
  auto& parsing = *static_cast<Parsing*>(data);
  parsing.Guard([&] { parsing.reader.Start(name, attributes); });
}

void OnEnd(void* data, const char* name) {
  auto& parsing = *static_cast<Parsing*>(data);
  parsing.Guard([&] { parsing.reader.End(name); });
}

void OnText(void* data, const char* text, int length) {
  static_cast<Parsing*>(data)->reader.Text({text, static_cast<std::size_t>(length)});
}

}  // namespace

Answer ReadXmlaAnswer(const std::string& xml) {
  Parsing parsing;
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate("UTF-8"), &XML_ParserFree);
  parsing.parser = parser.get();
  XML_SetUserData(parser.get(), &parsing);
  XML_SetElementHandler(parser.get(), OnStart, OnEnd);
  XML_SetCharacterDataHandler(parser.get(), OnText);
  const auto status = XML_Parse(parser.get(), xml.data(), static_cast<int>(xml.size()), XML_TRUE);
  if (!parsing.failure.empty()) throw std::runtime_error(parsing.failure);
  if (status != XML_STATUS_OK) {
    throw std::runtime_error("The server sent no XML: " + xml.substr(0, 500));
  }
  return parsing.reader.Take();
}

}  // namespace vok::interop
