#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <pugixml.hpp>
#include <set>
#include <string_view>
#include <utility>

#include "platform/utf8.h"
#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/mdx/resolver.h"
#include "providers/cube/olap/storage/bytes.h"
#include "providers/cube/olap/storage/format.h"

namespace vok::olap {
namespace {

using Node = pugi::xml_node;

/// They describe or decorate; without them the numbers are the same.
constexpr std::array<std::string_view, 8> kIgnoredElements = {
    "Annotations", "Property",  "AggName",         "AggPattern",
    "AggExclude",  "Parameter", "MemberFormatter", "CellFormatter"};

/// Without them other members or numbers would come out.
constexpr std::array<std::string_view, 5> kRefusedAttributes = {
    "parentColumn", "nullParentValue", "defaultMember", "usage", "memberReaderClass"};

/// The type of a level of a time dimension that has nothing to do with time.
constexpr std::string_view kTimeless = "TimeUndefined";

struct LevelTypeName {
  std::string_view name;
  LevelKind kind;
};
constexpr std::array<LevelTypeName, 9> kLevelTypes = {{{"Regular", LevelKind::kRegular},
                                                       {kTimeless, LevelKind::kRegular},
                                                       {"TimeYears", LevelKind::kYears},
                                                       {"TimeHalfYears", LevelKind::kHalfYears},
                                                       {"TimeHalfYear", LevelKind::kHalfYears},
                                                       {"TimeQuarters", LevelKind::kQuarters},
                                                       {"TimeMonths", LevelKind::kMonths},
                                                       {"TimeWeeks", LevelKind::kWeeks},
                                                       {"TimeDays", LevelKind::kDays}}};

class SchemaReader {
 public:
  SchemaReader(const Locale& locale, const std::string& path, std::string_view text)
      : locale_(locale), path_(path), text_(text) {}

  std::vector<CubeSchema> Read() {
    if (!IsUtf8(text_)) throw BadInput(path_, "is not valid UTF-8. Save the schema as UTF-8.");
    pugi::xml_document document;
    const auto result =
        document.load_buffer(text_.data(), text_.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!result) {
      throw BadInput(PlaceAt(result.offset),
                     std::string("is not well-formed XML: ") + result.description());
    }
    schema_ = document.child("Schema");
    if (!schema_) throw BadInput(path_, "there is no <Schema> element");
    CheckChildren(schema_, {"Dimension", "Cube"});
    std::vector<CubeSchema> cubes;
    const CsvForm form = ReadForm();
    for (const Node node : schema_.children("Cube")) {
      cubes.push_back(ReadCube(node));
      cubes.back().csv = form;
    }
    if (cubes.empty()) throw BadInput(path_, "there is no <Cube> in the schema");
    CheckNames(schema_, "Cube", cubes);
    return cubes;
  }

 private:
  /// Annotations of others are passed over.
  CsvForm ReadForm() const {
    CsvForm form;
    for (const Node node : schema_.child("Annotations").children("Annotation")) {
      const std::string name = Text(node, "name", "");
      const std::string value = node.text().get();
      try {
        if (name == "csv.separator") SetForm(form, value, "", "");
        if (name == "csv.decimal") SetForm(form, "", value, "");
        if (name == "csv.dates") SetForm(form, "", "", value);
      } catch (const Failure& failure) {
        throw BadInput(PlaceAt(node.offset_debug()), failure.description());
      }
    }
    return form;
  }

  CubeSchema ReadCube(Node node) {
    CheckChildren(node, {"Table", "Dimension", "DimensionUsage", "Measure", "CalculatedMember"});
    CubeSchema cube;
    cube.name = Required(node, "name");
    cube.caption = Text(node, "caption", cube.name);
    const Node table = node.child("Table");
    if (!table) throw Bad(node, "has no <Table>: name the fact table");
    CheckChildren(table, {});
    cube.fact_table = ReadTable(table);
    for (const Node child : node.children()) {
      const std::string_view element = child.name();
      if (element == "Dimension") cube.dimensions.push_back(ReadDimension(child, child));
      if (element == "DimensionUsage") cube.dimensions.push_back(ReadUsage(child));
      if (element == "Measure") cube.measures.push_back(ReadMeasure(child));
      if (element == "CalculatedMember") cube.calculated.push_back(ReadCalculated(child));
    }
    if (cube.dimensions.empty()) throw Bad(node, "has no <Dimension>");
    if (cube.measures.empty()) throw Bad(node, "has no <Measure>");
    std::size_t hierarchies = 0;
    for (const DimensionSchema& dimension : cube.dimensions) {
      hierarchies += dimension.hierarchies.size();
    }
    CheckCount(node, "hierarchies", hierarchies, kMostHierarchies);
    CheckNames(node, "Dimension", cube.dimensions);
    CheckNames(node, "Measure", cube.measures);
    cube.default_measure = DefaultMeasure(node, cube.measures);
    return cube;
  }

  uint32_t DefaultMeasure(Node cube, const std::vector<MeasureSchema>& measures) const {
    const std::string name = Text(cube, "defaultMeasure", measures.front().name);
    for (uint32_t index = 0; index < measures.size(); ++index) {
      if (EqualNoCase(locale_, measures[index].name, name)) return index;
    }
    throw Bad(cube, "has no measure " + Quoted(name) + ", its defaultMeasure");
  }

  DimensionSchema ReadUsage(Node usage) {
    const std::string source = Required(usage, "source");
    const Node shared = schema_.find_child_by_attribute("Dimension", "name", source.c_str());
    if (!shared) throw Bad(usage, "refers to a shared dimension that is not there: " + source);
    CheckChildren(usage, {});
    if (usage.attribute("level")) throw Unsupported(usage, "the attribute level");
    return ReadDimension(shared, usage);
  }

  /// `usage` names the dimension and its foreign key; it is the dimension itself unless shared.
  DimensionSchema ReadDimension(Node node, Node usage) {
    CheckChildren(node, {"Hierarchy"});
    DimensionSchema dimension;
    dimension.name = Required(usage, "name");
    if (EqualNoCase(locale_, dimension.name, "Measures")) {
      throw Bad(usage, "bears the name of the dimension that holds the measures");
    }
    dimension.caption = Text(usage, "caption", Text(node, "caption", dimension.name));
    dimension.foreign_key = Text(usage, "foreignKey", "");
    const std::string type = Text(node, "type", "StandardDimension");
    if (type != "TimeDimension" && type != "StandardDimension") {
      throw Unsupported(node, "the type " + Quoted(type));
    }
    dimension.is_time = type == "TimeDimension" && !IsTimeInNameOnly(node);
    for (const Node child : node.children("Hierarchy")) {
      dimension.hierarchies.push_back(ReadHierarchy(child, dimension.name));
      if (!dimension.hierarchies.back().table.name.empty() && dimension.foreign_key.empty()) {
        throw Bad(usage, "has no foreignKey: name the fact table's column");
      }
    }
    if (dimension.hierarchies.empty()) throw Bad(node, "has no <Hierarchy>");
    CheckNames(node, "Hierarchy", dimension.hierarchies);
    return dimension;
  }

  /// Schemas call dimensions so for the sake of servers that read their members faster then.
  static bool IsTimeInNameOnly(Node dimension) {
    bool any = false;
    for (const Node hierarchy : dimension.children("Hierarchy")) {
      for (const Node level : hierarchy.children("Level")) {
        if (level.attribute("levelType").value() != kTimeless) return false;
        any = true;
      }
    }
    return any;
  }

  TableName ReadTable(Node node) const {
    return {Required(node, "name"), Text(node, "schema", "")};
  }

  HierarchySchema ReadHierarchy(Node node, const std::string& dimension) {
    CheckChildren(node, {"Table", "Level"});
    HierarchySchema hierarchy;
    hierarchy.name = Text(node, "name", dimension);
    hierarchy.has_all = Flag(node, "hasAll", true);
    hierarchy.all_member_name = Text(node, "allMemberName", "All " + hierarchy.name + "s");
    hierarchy.all_member_caption = Text(node, "allMemberCaption", hierarchy.all_member_name);
    hierarchy.all_level_name = Text(node, "allLevelName", "(All)");
    if (const Node table = node.child("Table")) {
      CheckChildren(table, {});
      hierarchy.table = ReadTable(table);
      hierarchy.primary_key = Required(node, "primaryKey");
      CheckTable(node, "primaryKeyTable", hierarchy.table.name);
    }
    for (const Node child : node.children("Level")) {
      hierarchy.levels.push_back(ReadLevel(child, hierarchy.table.name));
    }
    if (hierarchy.levels.empty()) throw Bad(node, "has no <Level>");
    CheckCount(node, "levels", hierarchy.levels.size() + (hierarchy.has_all ? 1 : 0), kMostLevels);
    CheckNames(node, "Level", hierarchy.levels);
    return hierarchy;
  }

  LevelSchema ReadLevel(Node node, const std::string& table) {
    CheckChildren(node, {});
    LevelSchema level;
    level.name = Required(node, "name");
    level.column = Required(node, "column");
    level.name_column = Text(node, "nameColumn", "");
    level.caption_column = Text(node, "captionColumn", "");
    level.ordinal_column = Text(node, "ordinalColumn", "");
    level.unique_members = Flag(node, "uniqueMembers", false);
    level.key_type = ReadKeyType(node);
    level.kind = ReadLevelKind(node);
    CheckTable(node, "table", table);
    if (Text(node, "hideMemberIf", "Never") != "Never") {
      throw Unsupported(node, "the attribute hideMemberIf");
    }
    return level;
  }

  KeyType ReadKeyType(Node node) const {
    const std::string type = Text(node, "type", "String");
    if (type == "Integer") return KeyType::kInteger;
    if (type == "Numeric") return KeyType::kNumeric;
    if (type == "String") return KeyType::kText;
    throw Unsupported(node, "the type " + Quoted(type) + " (String, Integer and Numeric are)");
  }

  LevelKind ReadLevelKind(Node node) const {
    const std::string type = Text(node, "levelType", "Regular");
    const auto* known = std::find_if(kLevelTypes.begin(), kLevelTypes.end(),
                                     [&](const LevelTypeName& each) { return each.name == type; });
    if (known == kLevelTypes.end()) throw Unsupported(node, "the levelType " + Quoted(type));
    return known->kind;
  }

  MeasureSchema ReadMeasure(Node node) {
    CheckChildren(node, {});
    MeasureSchema measure;
    measure.name = Required(node, "name");
    measure.caption = Text(node, "caption", measure.name);
    measure.column = Text(node, "column", "");
    measure.format_string = Text(node, "formatString", "");
    measure.aggregator = ReadAggregator(node);
    if (measure.column.empty() && measure.aggregator != Aggregator::kCount) {
      throw Bad(node, "has no column");
    }
    for (const Node annotation : node.child("Annotations").children("Annotation")) {
      if (Text(annotation, "name", "") != "live.may-vary") continue;
      measure.may_vary = std::string_view(annotation.text().get()) == "true";
    }
    return measure;
  }

  CalculatedMemberSchema ReadCalculated(Node node) {
    CheckChildren(node, {"Formula", "CalculatedMemberProperty"});
    CalculatedMemberSchema member;
    member.place = PlaceAt(node.offset_debug());
    CalculatedDefinition& definition = member.definition;
    definition.name = Required(node, "name");
    definition.caption = Text(node, "caption", definition.name);
    definition.above = ReadAbove(node);
    definition.is_visible = Flag(node, "visible", true);
    definition.format_string = Text(node, "formatString", "");
    const Node formula = node.child("Formula");
    definition.formula = formula ? formula.text().get() : Text(node, "formula", "");
    if (definition.formula.empty()) throw Bad(node, "has no <Formula>");
    for (const Node property : node.children("CalculatedMemberProperty")) {
      ReadProperty(property, definition);
    }
    return member;
  }

  /// The hierarchy, by the name of its dimension or its own, or a member of it.
  std::string ReadAbove(Node node) const {
    const std::string dimension = Text(node, "dimension", "");
    const std::string hierarchy = Text(node, "hierarchy", "");
    if (dimension.empty() == hierarchy.empty()) {
      throw Bad(node, "needs one of the attributes dimension and hierarchy");
    }
    std::string above = dimension.empty() ? hierarchy : Bracketed(dimension);
    if (above.front() != '[') above = Bracketed(above);
    return Text(node, "parent", above);
  }

  void ReadProperty(Node node, CalculatedDefinition& definition) const {
    const std::string name = Required(node, "name");
    const std::string value = PropertyValue(node);
    if (EqualNoCase(locale_, name, "FORMAT_STRING")) {
      definition.format_string = value;
    } else if (EqualNoCase(locale_, name, "CAPTION")) {
      definition.caption = value;
    } else if (EqualNoCase(locale_, name, "SOLVE_ORDER")) {
      definition.solve_order = NumberOf(node, value);
    } else if (!IsIgnoredProperty(name)) {
      throw Unsupported(node, "a property of this name");
    }
  }

  /// The value as it is, or that of an expression that is a text or a number.
  std::string PropertyValue(Node node) const {
    std::string expression = Text(node, "expression", "");
    if (node.attribute("value")) return Text(node, "value", "");
    if (expression.empty()) throw Bad(node, "has neither value nor expression");
    const char quote = expression.front();
    const bool quoted = quote == '\'' || quote == '"';
    if (!quoted && ToNumber(expression)) return expression;
    if (!quoted || expression.size() < 2 || expression.find(quote, 1) != expression.size() - 1) {
      throw Unsupported(node, "an expression that is neither a number nor a text in quotes");
    }
    return expression.substr(1, expression.size() - 2);
  }

  static std::optional<double> ToNumber(const std::string& text) {
    double number = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc{} || read.ptr != end || !std::isfinite(number)) return std::nullopt;
    return number;
  }

  double NumberOf(Node node, const std::string& text) const {
    const auto number = ToNumber(text);
    if (!number) throw Bad(node, "is " + Quoted(text) + ", which is not a number");
    return *number;
  }

  Aggregator ReadAggregator(Node node) const {
    const std::string name = Required(node, "aggregator");
    if (name == "sum") return Aggregator::kSum;
    if (name == "count") return Aggregator::kCount;
    if (name == "min") return Aggregator::kMin;
    if (name == "max") return Aggregator::kMax;
    if (name == "distinct-count" || name == "distinct count") return Aggregator::kDistinctCount;
    throw Unsupported(
        node, "the aggregator " + Quoted(name) + " (sum, count, min, max and distinct-count are)");
  }

  void CheckChildren(Node node, std::initializer_list<std::string_view> known) const {
    for (const Node child : node.children()) {
      if (child.type() != pugi::node_element) continue;
      const std::string_view name = child.name();
      if (std::find(known.begin(), known.end(), name) == known.end() &&
          std::find(kIgnoredElements.begin(), kIgnoredElements.end(), name) ==
              kIgnoredElements.end()) {
        throw BadInput(PlaceAt(child.offset_debug()),
                       "<" + std::string(name) + "> is not supported here");
      }
    }
    for (const auto attribute : node.attributes()) {
      const std::string_view name = attribute.name();
      if (std::find(kRefusedAttributes.begin(), kRefusedAttributes.end(), name) !=
          kRefusedAttributes.end()) {
        throw Unsupported(node, "the attribute " + std::string(name));
      }
    }
  }

  void CheckTable(Node node, const char* attribute, const std::string& table) const {
    if (Text(node, attribute, table) == table) return;
    throw Unsupported(node, std::string("the attribute ") + attribute +
                                " with another table than the hierarchy's");
  }

  template <typename Item>
  void CheckNames(Node parent, const std::string& what, const std::vector<Item>& items) const {
    std::set<std::string> names;
    for (const Item& item : items) {
      if (!names.insert(locale_.FoldCase(item.name)).second) {
        throw Bad(parent, "has two of the name " + Quoted(item.name) + " (<" + what +
                              ">; upper and lower case are the same)");
      }
    }
  }

  std::string Required(Node node, const char* attribute) const {
    std::string value = Text(node, attribute, "");
    if (value.empty()) throw Bad(node, std::string("has no attribute ") + attribute);
    return value;
  }

  static std::string Text(Node node, const char* attribute, const std::string& otherwise) {
    const auto found = node.attribute(attribute);
    return found ? found.value() : otherwise;
  }

  bool Flag(Node node, const char* attribute, bool otherwise) const {
    const std::string value = Text(node, attribute, otherwise ? "true" : "false");
    if (value == "true") return true;
    if (value == "false") return false;
    throw Bad(node, std::string("the attribute ") + attribute + " is " + Quoted(value) +
                        ", neither true nor false");
  }

  std::string PlaceAt(std::ptrdiff_t offset) const {
    const auto end = text_.begin() + std::clamp<std::ptrdiff_t>(
                                         offset, 0, static_cast<std::ptrdiff_t>(text_.size()));
    return path_ + ", line " + std::to_string(1 + std::count(text_.begin(), end, '\n'));
  }

  void CheckCount(Node node, const std::string& what, std::size_t count, std::size_t most) const {
    if (count <= most) return;
    throw Bad(node, "has " + std::to_string(count) + " " + what + "; the limit is " +
                        std::to_string(most));
  }

  Failure Bad(Node node, const std::string& what) const {
    const std::string name = Text(node, "name", "");
    return BadInput(
        PlaceAt(node.offset_debug()),
        "<" + std::string(node.name()) + "> " + (name.empty() ? "" : Quoted(name) + " ") + what);
  }

  Failure Unsupported(Node node, const std::string& what) const {
    return Bad(node, "has " + what + ", which is not supported");
  }

  const Locale& locale_;
  const std::string& path_;
  std::string_view text_;
  Node schema_;
};

}  // namespace

std::vector<CubeSchema> ReadSchema(const Locale& locale, const std::string& path,
                                   const std::string& text) {
  return SchemaReader(locale, path, text).Read();
}

}  // namespace vok::olap
