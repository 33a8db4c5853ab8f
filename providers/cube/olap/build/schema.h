// The parts of a schema that a cube is built from.
#pragma once

#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/locale.h"
#include "platform/table_server.h"
#include "providers/cube/olap/build/csv_form.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

/// What a level's keys are: they are compared, ordered and named accordingly.
enum class KeyType { kText, kInteger, kNumeric };

struct LevelSchema {
  std::string name;
  std::string column;
  std::string name_column;     ///< empty: the key
  std::string caption_column;  ///< empty: the name
  std::string ordinal_column;  ///< empty: ordered by key
  KeyType key_type = KeyType::kText;
  LevelKind kind = LevelKind::kRegular;
  bool unique_members = false;
};

struct HierarchySchema {
  std::string name;
  bool has_all = true;
  std::string all_member_name;
  std::string all_member_caption;
  std::string all_level_name;
  TableName table;          ///< without a name: the levels' columns are the fact table's
  std::string primary_key;  ///< of `table`
  std::vector<LevelSchema> levels;
};

struct DimensionSchema {
  std::string name;
  std::string caption;
  std::string
      foreign_key;  ///< column of the fact table; may be empty when no hierarchy has a table
  bool is_time = false;
  std::vector<HierarchySchema> hierarchies;
};

struct MeasureSchema {
  std::string name;
  std::string caption;
  std::string column;  ///< empty for a count of rows
  Aggregator aggregator = Aggregator::kSum;
  std::string format_string;
  bool may_vary = false;  ///< its sums of binary fractions may, in a live cube
};

struct CalculatedMemberSchema {
  CalculatedDefinition definition;
  std::string place;  ///< "schema.xml, line 12"
};

struct CubeSchema {
  std::string name;
  std::string caption;
  TableName fact_table;
  CsvForm csv;  ///< of all tables that are CSV files
  uint32_t default_measure = 0;
  std::vector<DimensionSchema> dimensions;
  std::vector<MeasureSchema> measures;
  std::vector<CalculatedMemberSchema> calculated;  ///< their formulas not looked into
};

/// The cubes of an XML schema, whose text it is given. Failures name the file and line: not
/// well-formed, something missing or given twice, an element that is not supported and would change
/// the numbers if passed over.
std::vector<CubeSchema> ReadSchema(const Locale& locale, const std::string& path,
                                   const std::string& text);

}  // namespace vok::olap
