// What a cube's connection text asks for.
#pragma once

#include <string>
#include <string_view>

namespace vok {

struct ConnectionText {
  std::string provider;
  std::string data_source;
  std::string initial_catalog;  ///< without the brackets around it
};

/// Parts "Keyword=value" with ";" between, in any order, keywords without regard to case; a value
/// may stand in quotes. Other keywords are passed over. Failure -2147467259: a part without "=" or
/// a quote without end.
ConnectionText ParseConnectionText(std::string_view text);

/// Whether the data source is the address of a server (http or https), and not a file.
bool NamesServer(const ConnectionText& text);

}  // namespace vok
