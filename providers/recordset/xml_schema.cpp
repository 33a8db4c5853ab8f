#include "providers/recordset/xml_schema.h"

#include <algorithm>

#include "providers/recordset/xml_values.h"

namespace vok::recordset {
namespace {

using namespace xml_names;

std::string Text(const char* attribute) { return attribute == nullptr ? "" : attribute; }

}  // namespace

void XmlSchema::Start(std::size_t depth, const xml::Attributes& attributes) {
  const xml::Name name = attributes.element();
  if (name.space != kSchemaSpace) return;
  const bool in_row = depth == 2 && !row_name_.empty();
  if (depth == 0) {
    Open(attributes);
  } else if (name.local == "ElementType" && in_row) {
    child_sets_.push_back(Text(attributes.Find({{}, "name"})));
  } else if (name.local == "ElementType" && depth == 1) {
    if (!row_name_.empty()) ThrowUnreadable(file_, "its schema describes two kinds of rows");
    OpenRow(attributes);
  } else if (name.local == "AttributeType" && depth == 1) {
    Define(attributes, shared_);
  } else if (name.local == "AttributeType" && in_row) {
    Define(attributes, attributes_);
  } else if (name.local == "attribute" && in_row) {
    Refer(attributes);
  } else if (name.local == "datatype" && open_ != nullptr &&
             depth == (open_ == &attributes_ ? 3U : 2U)) {
    SetType(attributes);
  }
}

void XmlSchema::Open(const xml::Attributes& attributes) {
  row_space_ = "#" + Text(attributes.Find({{}, "id"}));
}

void XmlSchema::OpenRow(const xml::Attributes& attributes) {
  row_name_ = Text(attributes.Find({{}, "name"}));
  if (row_name_.empty()) ThrowUnreadable(file_, "its schema names no row");
}

void XmlSchema::Define(const xml::Attributes& attributes, std::vector<Attribute>& into) {
  CheckSize(0, into.size() + 1, file_);
  Attribute& attribute = into.emplace_back();
  open_ = &into;
  attribute.name = Text(attributes.Find({{}, "name"}));
  if (attribute.name.empty()) ThrowUnreadable(file_, "a column of its schema has no name");
  const char* shown = attributes.Find({kRowsetSpace, "name"});
  attribute.column.name = shown != nullptr ? shown : attribute.name;
  if (const char* number = attributes.Find({kRowsetSpace, "number"})) {
    const auto value = ParseValue(FieldType::kInteger, number);
    if (!value) ThrowUnreadable(file_, "column \"" + attribute.name + "\" has a wrong number");
    attribute.number = value->ToInt32();
  }
  SetType(attributes);
}

void XmlSchema::Refer(const xml::Attributes& attributes) {
  const std::string name = Text(attributes.Find({{}, "type"}));
  const auto found = std::find_if(shared_.begin(), shared_.end(),
                                  [&](const Attribute& shared) { return shared.name == name; });
  if (found == shared_.end()) {
    ThrowUnreadable(file_, "its schema does not describe the column \"" + name + "\"");
  }
  CheckSize(0, attributes_.size() + 1, file_);
  attributes_.push_back(*found);
}

void XmlSchema::SetType(const xml::Attributes& attributes) {
  if (const char* type = attributes.Find({kTypeSpace, "type"})) {
    open_->back().column.type = TypeNamed(type);
  }
}

void XmlSchema::Finish() {
  if (attributes_.empty()) ThrowUnreadable(file_, "its schema describes no columns");
  // Columns without a number follow the numbered ones.
  std::stable_sort(attributes_.begin(), attributes_.end(),
                   [](const Attribute& a, const Attribute& b) {
                     return a.number.value_or(INT32_MAX) < b.number.value_or(INT32_MAX);
                   });
  for (const Attribute& attribute : attributes_) {
    if (!places_.emplace(attribute.name, columns_.size()).second) {
      ThrowUnreadable(file_, "its schema describes the column \"" + attribute.name + "\" twice");
    }
    columns_.push_back(attribute.column);
  }
}

bool XmlSchema::IsChildSet(xml::Name name) const {
  return (name.space.empty() || name.space == row_space_) &&
         std::find(child_sets_.begin(), child_sets_.end(), name.local) != child_sets_.end();
}

std::optional<std::size_t> XmlSchema::ColumnOf(std::string_view attribute) const {
  const auto found = places_.find(attribute);
  return found == places_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace vok::recordset
