// Reads a rowset row by row; nothing of a row is kept.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/cube/xmla/soap_reader.h"

namespace vok::xmla {

/// One text per wanted column, in their order; "" for a column that the row has not.
using Row = std::vector<std::string>;
using RowTaker = std::function<void(const Row&)>;

/// Failure -2147467259 for more than `most_rows`.
class RowsetReader : public ResultReader {
 public:
  RowsetReader(std::vector<std::string> columns, std::size_t most_rows, RowTaker take)
      : columns_(std::move(columns)),
        row_(columns_.size()),
        left_(most_rows),
        most_rows_(most_rows),
        take_(std::move(take)) {}

  void Start(std::size_t level, std::string_view name, const xml::Attributes& attributes) override;
  void End(std::size_t level, std::string_view name, std::string_view text) override;

 private:
  std::vector<std::string> columns_;
  Row row_;
  std::size_t left_;
  std::size_t most_rows_;
  RowTaker take_;
};

}  // namespace vok::xmla
