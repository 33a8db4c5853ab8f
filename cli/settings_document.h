// The settings document: all saved settings as one JSON text, for import and export.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "settings/records.h"

namespace vok::cli {

struct SettingsDocument {
  std::vector<DataSourceSetting> data_sources;
  std::vector<PeriodSet> periods;
};

/// Reads and checks the whole document, so that a bad one changes nothing. Failure 13 (wrong shape
/// or type), 9 (too many entries), 5 (not JSON) names `origin`, the place in the document such as
/// "dataSources[0].MoneySets[3].Measure", and what is expected there. Unknown and double names are
/// failures too: they are typing mistakes that would lose something. Names of sets may be any text.
SettingsDocument ParseSettingsDocument(std::string_view json, const std::string& origin);

/// The document, indented by two blanks, without what is the same as its absence.
std::string PrintSettingsDocument(const SettingsDocument& document);

}  // namespace vok::cli
