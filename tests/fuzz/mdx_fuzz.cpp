// Queries of any bytes: read or refused; what is read, written out and read again, is the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/failure.h"
#include "providers/olap/mdx/parser.h"

namespace {

std::string Written(const std::string& mdx) {
  const vok::olap::SourceText source(mdx);
  return ToText(vok::olap::Parse(source));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  std::string first;
  try {
    first = Written(std::string(reinterpret_cast<const char*>(data), size));
  } catch (const vok::Failure&) {
    return 0;
  }
  try {
    if (Written(first) != first) std::abort();
  } catch (const vok::Failure& failure) {
    // Written out, every operation stands in parentheses: that may nest too deep.
    if (failure.description().find("nest more than") == std::string::npos) std::abort();
  }
  return 0;
}
