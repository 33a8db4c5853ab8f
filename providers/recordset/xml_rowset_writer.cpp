#include <algorithm>
#include <cctype>

#include "platform/failure.h"
#include "platform/text.h"
#include "platform/utf8.h"
#include "providers/recordset/rowset.h"
#include "providers/recordset/xml_schema.h"
#include "providers/recordset/xml_values.h"

namespace vok::recordset {
namespace {

using namespace xml_names;

[[noreturn]] void ThrowNoXml(std::string_view text, const std::string& why) {
  throw Failure(failure_number::kInvalidCall, "The text \"" + std::string(Utf16Prefix(text, 40)) +
                                                  "\" cannot be written as XML: " + why);
}

/// Checks one character and gives its length in bytes.
std::size_t CharacterLength(std::string_view text, std::size_t at) {
  const std::string_view rest = text.substr(at);
  if (CharacterSize(rest) == 0) ThrowNoXml(text, "it is not Unicode text");
  if (rest.starts_with("\uFFFE") || rest.starts_with("\uFFFF")) {
    ThrowNoXml(text, "it has a code that is not a character");
  }
  return CharacterSize(rest);
}

const char* Entity(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\'':
      return "&apos;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    default:
      return nullptr;
  }
}

std::string Quoted(std::string_view text) {
  std::string quoted = "'";
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = CharacterLength(text, at);
    if (const char* entity = Entity(text[at])) {
      quoted += entity;
    } else if (static_cast<unsigned char>(text[at]) < 0x20) {
      ThrowNoXml(text, "it has a control character");
    } else {
      quoted += text.substr(at, length);
    }
    at += length;
  }
  return quoted + "'";
}

/// The column's name where XML takes it as an attribute's and no column before has it, else one
/// made of its place.
std::string AttributeName(const std::string& name, const std::vector<std::string>& taken) {
  const auto is_plain = [](unsigned char c) { return c < 0x80 && (std::isalnum(c) || c == '_'); };
  const bool fits = !name.empty() && std::all_of(name.begin(), name.end(), is_plain) &&
                    std::isdigit(static_cast<unsigned char>(name[0])) == 0;
  const bool is_free = std::find(taken.begin(), taken.end(), name) == taken.end();
  return fits && is_free ? name : "column-" + std::to_string(taken.size() + 1);
}

std::size_t LongestText(const Rowset& rowset, std::size_t place) {
  std::size_t longest = 1;
  for (const Row& row : rowset.rows) {
    if (const auto* text = row[place].As<std::string>()) {
      longest = std::max(longest, Utf16Length(*text));
    }
  }
  return longest;
}

std::string Schema(const Rowset& rowset, const std::vector<std::string>& names) {
  std::string xml =
      "<s:Schema id='RowsetSchema'>\r\n <s:ElementType name='row' content='eltOnly'>\r\n";
  for (std::size_t place = 0; place < names.size(); ++place) {
    const Column& column = rowset.columns[place];
    xml += "  <s:AttributeType name='" + names[place] + "'";
    if (names[place] != column.name) xml += " rs:name=" + Quoted(column.name);
    xml += " rs:number='" + std::to_string(place + 1) +
           "' rs:nullable='true'>\r\n   <s:datatype dt:type='" + NameOf(column.type) + "'";
    if (column.type == FieldType::kText) {
      xml += " dt:maxLength='" + std::to_string(LongestText(rowset, place)) + "'";
    }
    xml += "/>\r\n  </s:AttributeType>\r\n";
  }
  return xml + "  <s:extends type='rs:rowbase'/>\r\n </s:ElementType>\r\n</s:Schema>\r\n";
}

std::string Opening() {
  const auto space = [](const char* prefix, std::string_view address) {
    return std::string(" xmlns:") + prefix + "='" + std::string(address) + "'";
  };
  return "<xml" + space("s", kSchemaSpace) + space("dt", kTypeSpace) + space("rs", kRowsetSpace) +
         space("z", "#RowsetSchema") + ">\r\n";
}

}  // namespace

std::string WriteXmlRowset(const Rowset& rowset) {
  std::vector<std::string> names;
  for (const Column& column : rowset.columns) names.push_back(AttributeName(column.name, names));
  std::string xml = Opening() + Schema(rowset, names) + "<rs:data>\r\n";
  for (const Row& row : rowset.rows) {
    xml += " <z:row";
    for (std::size_t place = 0; place < names.size(); ++place) {
      const bool is_left_out = row[place].IsNull() || row[place].Is<CellError>();
      if (!is_left_out) xml += " " + names[place] + "=" + Quoted(TextOf(row[place]));
    }
    xml += "/>\r\n";
  }
  return xml + "</rs:data>\r\n</xml>\r\n";
}

}  // namespace vok::recordset
