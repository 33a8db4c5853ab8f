#include "providers/cube/olap/build/bad_input.h"

#include "platform/text.h"

namespace vok::olap {

Failure BadInput(const std::string& where, const std::string& what) {
  return Failure(failure_number::kUnspecified, where + ": " + what);
}

std::string Listed(const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 20;
  if (names.empty()) return "none";
  std::string list;
  for (std::size_t index = 0; index < names.size() && index < kMost; ++index) {
    list += (index == 0 ? "" : ", ") + names[index];
  }
  return names.size() > kMost ? list + ", ..." : list;
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kMostUnits = 60;
  const std::string_view kept = Utf16Prefix(text, kMostUnits);
  return "\"" + std::string(kept) + (kept.size() < text.size() ? "...\"" : "\"");
}

}  // namespace vok::olap
