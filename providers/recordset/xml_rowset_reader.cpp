// The XML form: a schema (attributes of a row), then the rows. Rows may stand in groups of changes
// that wait to be sent to a database:
//
//   insert  rows that are new
//   delete  rows that were deleted
//   update  rows as they were, within "original", and after them what changed in each; "forcenull"
//           names attributes that became NULL
//
// Record sets within a row are passed over. A schema's elements that are not known are passed over;
// among the rows everything must be known.
#include <algorithm>
#include <utility>

#include "providers/recordset/rowset.h"
#include "providers/recordset/xml_schema.h"
#include "providers/recordset/xml_values.h"
#include "providers/xml/xml_parser.h"

namespace vok::recordset {
namespace {

using namespace xml_names;

class RowsetHandler : public xml::Handler {
 public:
  explicit RowsetHandler(const std::string& file) : file_(file), schema_(file) {}

  void Start(std::string_view, const xml::Attributes& attributes) override {
    const std::size_t depth = depth_++;
    if (depth == 0) return;
    if (depth == 1) {
      StartSection(attributes.element());
    } else if (section_ == Section::kRows) {
      return StartAmongRows(attributes.element(), attributes);
    }
    if (section_ == Section::kSchema) schema_.Start(depth - 1, attributes);
  }

  void End(std::string_view) override {
    --depth_;
    if (depth_ == 1 && section_ == Section::kSchema) {
      schema_.Finish();
      has_schema_ = true;
    }
    if (depth_ == 1) section_ = Section::kNone;
    if (section_ == Section::kRows) EndAmongRows();
  }

  Rowset Take() {
    if (!has_rows_) ThrowUnreadable(file_, "it has no rows element");
    return {schema_.columns(), std::move(rows_)};
  }

 private:
  enum class Section { kNone, kSchema, kRows };
  enum class Group { kNone, kInsert, kDelete, kUpdate, kOriginal, kRow, kChildSet };

  void StartSection(xml::Name name) {
    if (name == xml::Name{kSchemaSpace, "Schema"}) {
      if (has_schema_) ThrowUnreadable(file_, "it has two schemas");
      section_ = Section::kSchema;
    } else if (name == xml::Name{kRowsetSpace, "data"}) {
      if (!has_schema_) ThrowUnreadable(file_, "its rows stand before their schema");
      if (has_rows_) ThrowUnreadable(file_, "it has two sets of rows");
      has_rows_ = true;
      section_ = Section::kRows;
    }
  }

  void StartAmongRows(xml::Name name, const xml::Attributes& attributes) {
    const Group group = Inside();
    if (group == Group::kChildSet || (group == Group::kRow && schema_.IsChildSet(name))) {
      groups_.push_back(Group::kChildSet);
    } else if (group != Group::kRow && schema_.IsRow(name)) {
      TakeRow(group, attributes);
      groups_.push_back(Group::kRow);
    } else {
      groups_.push_back(GroupNamed(name, group));
      if (groups_.back() == Group::kUpdate) changed_ = rows_.size();
    }
  }

  Group Inside() const { return groups_.empty() ? Group::kNone : groups_.back(); }

  Group GroupNamed(xml::Name name, Group around) const {
    if (name.space == kRowsetSpace) {
      if (around == Group::kUpdate && name.local == "original") return Group::kOriginal;
      if (around == Group::kNone && name.local == "insert") return Group::kInsert;
      if (around == Group::kNone && name.local == "delete") return Group::kDelete;
      if (around == Group::kNone && name.local == "update") return Group::kUpdate;
    }
    ThrowUnreadable(file_, "\"" + std::string(name.local) + "\" stands among its rows");
  }

  void EndAmongRows() {
    if (groups_.back() == Group::kUpdate && changed_ != rows_.size()) {
      ThrowUnreadable(file_, "an update has more rows before it than after it");
    }
    groups_.pop_back();
  }

  void TakeRow(Group group, const xml::Attributes& attributes) {
    if (group == Group::kUpdate) {
      if (changed_ == rows_.size()) ThrowUnreadable(file_, "an update is of no row");
      return Assign(rows_[changed_++], attributes);
    }
    const std::size_t columns = schema_.columns().size();
    CheckSize(rows_.size() + 1, columns, file_);
    Row row(columns, Null{});
    Assign(row, attributes);
    if (group != Group::kDelete) rows_.push_back(std::move(row));
  }

  void Assign(Row& row, const xml::Attributes& attributes) {
    attributes.ForEach([&](xml::Name name, const char* text) {
      if (name == xml::Name{kRowsetSpace, "forcenull"}) return MakeNull(row, text);
      if (!name.space.empty()) return;  // what the writer noted about the row
      const std::size_t place = PlaceOf(name.local);
      const Column& column = schema_.columns()[place];
      auto value = ParseValue(column.type, text);
      if (!value) {
        ThrowUnreadable(file_, "row " + std::to_string(rows_.size() + 1) +
                                   " has a wrong value of \"" + column.name + "\"");
      }
      row[place] = *std::move(value);
    });
  }

  void MakeNull(Row& row, std::string_view names) {
    while (!names.empty()) {
      const std::size_t end = std::min(names.find(' '), names.size());
      if (end > 0) row[PlaceOf(names.substr(0, end))] = Null{};
      names.remove_prefix(std::min(end + 1, names.size()));
    }
  }

  std::size_t PlaceOf(std::string_view attribute) const {
    const auto place = schema_.ColumnOf(attribute);
    if (!place) {
      ThrowUnreadable(file_, "row " + std::to_string(rows_.size() + 1) + " has a value of \"" +
                                 std::string(attribute) + "\", which its schema does not describe");
    }
    return *place;
  }

  const std::string& file_;
  XmlSchema schema_;
  std::vector<Row> rows_;
  std::size_t depth_ = 0;
  Section section_ = Section::kNone;
  bool has_schema_ = false;
  bool has_rows_ = false;
  std::vector<Group> groups_;  ///< that are open, from the outermost on
  std::size_t changed_ = 0;    ///< the next row that the update which is open changes
};

}  // namespace

Rowset ReadXmlRowset(std::span<const std::byte> bytes, const std::string& name) {
  RowsetHandler handler(name);
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const auto fault = xml::Parser(handler, kDeepestElement, xml::Names::kResolved).Read(text, true);
  if (!fault) return handler.Take();
  ThrowUnreadable(name,
                  fault->refused ? fault->why : "it is not well-formed XML: " + fault->InLine());
}

}  // namespace vok::recordset
