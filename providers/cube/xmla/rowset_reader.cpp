#include "providers/cube/xmla/rowset_reader.h"

#include "platform/failure.h"

namespace vok::xmla {

void RowsetReader::Start(std::size_t level, std::string_view, const xml::Attributes&) {
  if (level != 1) return;
  for (std::string& field : row_) field.clear();
}

void RowsetReader::End(std::size_t level, std::string_view name, std::string_view text) {
  if (level == 1 && name == "row") {
    if (left_-- == 0) {
      throw Failure(failure_number::kUnspecified,
                    "it has more than " + std::to_string(most_rows_) + " rows");
    }
    take_(row_);
  }
  if (level != 2) return;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i] == name) row_[i] = text;
  }
}

}  // namespace vok::xmla
