// The names of the XML form, and its schema: which attributes a row has, and what they mean.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "providers/recordset/rowset.h"
#include "providers/xml/xml_parser.h"

namespace vok::recordset {

/// Takes the elements of a schema as they come, then gives the columns. Failures are the reader's.
class XmlSchema {
 public:
  explicit XmlSchema(const std::string& file) : file_(file) {}

  /// An element at `depth` below the schema's own, which is depth 0.
  void Start(std::size_t depth, const xml::Attributes& attributes);
  /// After the last element: puts the columns in order.
  void Finish();

  bool IsRow(xml::Name name) const { return name.local == row_name_ && name.space == row_space_; }
  /// Whether elements of that name within a row are rows of a record set of its own.
  bool IsChildSet(xml::Name name) const;
  const std::vector<Column>& columns() const { return columns_; }
  /// Of the attribute of that name; nothing when the rows have none.
  std::optional<std::size_t> ColumnOf(std::string_view attribute) const;

 private:
  struct Attribute {
    std::string name;
    Column column;
    std::optional<int32_t> number;
  };

  void Open(const xml::Attributes& attributes);
  void OpenRow(const xml::Attributes& attributes);
  void Define(const xml::Attributes& attributes, std::vector<Attribute>& into);
  void Refer(const xml::Attributes& attributes);
  void SetType(const xml::Attributes& attributes);

  const std::string& file_;
  std::string row_name_;
  std::string row_space_;
  std::vector<std::string> child_sets_;
  std::vector<Attribute> shared_;  ///< defined beside the row, to be referred to
  std::vector<Attribute> attributes_;
  std::vector<Attribute>* open_ = nullptr;  ///< whose last attribute is being described
  std::vector<Column> columns_;
  std::map<std::string, std::size_t, std::less<>> places_;
};

}  // namespace vok::recordset

namespace vok::recordset::xml_names {

inline constexpr std::string_view kSchemaSpace = "uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882";
inline constexpr std::string_view kTypeSpace = "uuid:C2F41010-65B3-11d1-A29F-00AA00C14882";
inline constexpr std::string_view kRowsetSpace = "urn:schemas-microsoft-com:rowset";

}  // namespace vok::recordset::xml_names
