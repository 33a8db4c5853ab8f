// Reads a rowset row by row; nothing of a row is kept.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/xmla/soap_reader.h"

namespace vok::xmla {

/// One text per wanted column, in their order; "" for a column that the row has not.
using Row = std::vector<std::string>;
using RowTaker = std::function<void(const Row&)>;

class RowsetReader : public ResultReader {
 public:
  RowsetReader(std::vector<std::string> columns, RowTaker take)
      : columns_(std::move(columns)), row_(columns_.size()), take_(std::move(take)) {}

  void Start(std::size_t level, std::string_view name, const xml::Attributes& attributes) override;
  void End(std::size_t level, std::string_view name, std::string_view text) override;

 private:
  std::vector<std::string> columns_;
  Row row_;
  RowTaker take_;
};

}  // namespace vok::xmla
