// Any bytes as a record set: a failure, or rows that are written and read back the same.
#include <span>

#include "providers/recordset/rowset.h"
#include "tests/fuzz/fuzz.h"

void FuzzOne(std::string_view input) {
  IsRewrittenTheSame(input, [](std::string_view bytes) {
    const auto rowset = vok::recordset::ReadRowset(std::as_bytes(std::span(bytes)), "input.rs");
    return WriteXmlRowset(rowset);
  });
}
