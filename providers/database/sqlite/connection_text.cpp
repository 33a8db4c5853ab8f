#include "providers/database/sqlite/connection_text.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "platform/connection_parts.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

using Parts = std::map<std::string, std::string>;

bool IsKnown(const std::string& keyword) {
  constexpr std::array<std::string_view, 7> kKnown = {
      "provider", "data source",           "user id",          "password",
      "mode",     "persist security info", "locale identifier"};
  return keyword.starts_with("jet oledb:") ||
         std::find(kKnown.begin(), kKnown.end(), keyword) != kKnown.end();
}

void CheckProvider(const std::string& text, const Parts& parts) {
  const auto provider = parts.find("provider");
  if (provider != parts.end() && EqualNoCaseAscii(provider->second, kJetProvider)) return;
  throw Failure(failure_number::kProviderNotFound,
                "Provider cannot be found: the connection text \"" + text +
                    "\" names none that opens a settings database. Use Provider=" +
                    std::string(kJetProvider) + ".");
}

}  // namespace

std::string StoreConnectionText::ToText() const {
  std::string source = data_source;
  if (source.find_first_of(";\"'") != std::string::npos || TrimBlanks(source) != source) {
    for (std::size_t at = 0; (at = source.find('"', at)) != std::string::npos; at += 2) {
      source.insert(at, 1, '"');
    }
    source = "\"" + source + "\"";
  }
  return "Provider=" + std::string(kJetProvider) + ";Data Source=" + source;
}

StoreConnectionText ParseConnectionText(const std::string& text) {
  Parts parts;
  for (auto& [keyword, value] : SplitConnectionText(text)) parts[keyword] = std::move(value);
  CheckProvider(text, parts);
  for (const auto& [keyword, value] : parts) {
    if (!IsKnown(keyword)) ThrowBadConnectionText(text, "\"" + keyword + "\" is no known keyword");
    if (keyword == "jet oledb:database password" && !value.empty()) {
      ThrowBadConnectionText(text, "settings databases with a password do not exist here");
    }
  }
  const auto source = parts.find("data source");
  if (source == parts.end() || source->second.empty()) {
    ThrowBadConnectionText(text, "it names no Data Source, the file to open");
  }
  return StoreConnectionText{source->second};
}

}  // namespace vok
