// One table of a Jet database: its columns and rows.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "providers/database/jet/reader/jet_file.h"

namespace vok::jet {

using Json = nlohmann::json;

/// A value for each column: a text, a whole number, a yes/no, a date as its serial number, or null.
using Row = std::vector<Json>;

class JetTable {
 public:
  /// `page` is where the table is defined. Columns of other kinds than those of `Row` are left out,
  /// and all but the `wanted` ones where some are.
  JetTable(MdbHandle& file, const std::string& name, unsigned long page,
           const std::set<std::string>& wanted = {});
  JetTable(const JetTable&) = delete;
  JetTable& operator=(const JetTable&) = delete;
  ~JetTable();

  /// [{"name": …, "type": the number of ADO's data type, "size": UTF-16 units of a text, else 0}].
  Json Columns() const;
  /// The names of those that are left out for their kind.
  const std::vector<std::string>& Unread() const { return unread_; }
  std::size_t ColumnNamed(const std::string& name) const;
  /// In the order of their pages. Fails when they are fewer than the table says it has.
  std::vector<Row> Rows();

 private:
  struct Column {
    std::string name;
    int position;  ///< among all columns of the table
    const MdbColumn* definition;
  };
  struct Place {
    int start;  ///< in the page that is in the buffer
    std::size_t size;
  };

  std::optional<Place> Find(uint32_t page, unsigned row);
  Row ReadRow(const Place& place);
  Json ReadField(const Column& column, const MdbField& field, const Place& place) const;

  MdbHandle& file_;
  MdbCatalogEntry entry_{};
  MdbTableDef* table_ = nullptr;
  std::vector<Column> columns_;
  std::vector<std::string> unread_;
};

}  // namespace vok::jet
