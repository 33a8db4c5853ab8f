// Any bytes as a record set: a failure, or rows that are written and read back the same.
#include <span>

#include "providers/recordset/rowset.h"
#include "tests/fuzz/fuzz.h"

namespace {

std::string Rewritten(std::string_view bytes, std::size_t& rows) {
  const auto rowset = vok::recordset::ReadRowset(std::as_bytes(std::span(bytes)), "input.rs");
  rows = rowset.rows.size();
  return WriteXmlRowset(rowset);
}

}  // namespace

void FuzzOne(std::string_view bytes) {
  std::string first;
  std::size_t rows = 0;
  std::size_t rows_again = 0;
  if (Refuses([&] { first = Rewritten(bytes, rows); })) return;
  if (Rewritten(first, rows_again) != first || rows_again != rows) std::abort();
}
