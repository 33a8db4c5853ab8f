#include "providers/recordset/rowset.h"

#include <algorithm>
#include <string_view>

#include "platform/failure.h"

namespace vok::recordset {
namespace {

using std::string_view_literals::operator""sv;

constexpr auto kAdtgStart = "\x01\x07TG!"sv;

bool LooksLikeXml(std::string_view text) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return true;
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  const auto first = text.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && text[first] == '<';
}

}  // namespace

Rowset ReadRowset(std::span<const std::byte> bytes, const std::string& name,
                  const CodePage& code_page) {
  if (bytes.size() > kLargestFile) ThrowUnreadable(name, "it is larger than 64 MB");
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (text.starts_with(kAdtgStart)) return ReadAdtg(bytes, name, code_page);
  if (LooksLikeXml(text)) return ReadXmlRowset(bytes, name);
  ThrowUnreadable(name, "it begins neither as the binary nor as the XML form of a record set");
}

void ThrowUnreadable(const std::string& name, const std::string& why) {
  throw Failure(failure_number::kUnspecified, "The record set \"" + name + "\" cannot be opened: " +
                                                  why + ". Save it again from its source.");
}

void CheckSize(std::size_t rows, std::size_t columns, const std::string& name) {
  if (columns > kMostColumns) ThrowUnreadable(name, "it has more than 1,000 columns");
  if (rows > kMostValues / std::max<std::size_t>(columns, 1)) {
    ThrowUnreadable(name, "it has more than 4,000,000 values");
  }
}

}  // namespace vok::recordset
