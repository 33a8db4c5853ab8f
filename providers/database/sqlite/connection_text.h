// The text that says which provider opens which file.
#pragma once

#include <string>
#include <string_view>

namespace vok {

inline constexpr std::string_view kJetProvider = "Microsoft.Jet.OLEDB.4.0";

struct StoreConnectionText {
  std::string data_source;  ///< path of the file, never empty

  /// The text that opens this file again.
  std::string ToText() const;
};

/// Reads parts "keyword=value" between ";". Keywords without regard to case; empty parts count for
/// nothing; a value may stand in single or double quotes, doubled inside. Failures: 3706 for
/// another provider or none, -2147467259 for a part that is no such pair, a keyword that is not
/// known, a missing "Data Source", a database password.
StoreConnectionText ParseConnectionText(const std::string& text);

}  // namespace vok
