// Any bytes as a record set: a failure, or rows that are written and read back the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "platform/failure.h"
#include "providers/recordset/rowset.h"

namespace {

using namespace vok::recordset;

std::string Rewritten(std::span<const std::byte> bytes, std::size_t& rows) {
  const Rowset rowset = ReadRowset(bytes, "input.rs");
  rows = rowset.rows.size();
  return WriteXmlRowset(rowset);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  std::string first;
  std::size_t rows = 0;
  try {
    first = Rewritten(std::as_bytes(std::span(data, size)), rows);
  } catch (const vok::Failure&) {
    return 0;
  }
  std::size_t rows_again = 0;
  const std::string second = Rewritten(std::as_bytes(std::span(first)), rows_again);
  if (second != first || rows_again != rows) std::abort();
  return 0;
}
