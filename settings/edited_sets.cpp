#include "settings/edited_sets.h"

#include "settings/schema.h"
#include "settings/set_rows.h"
#include "settings/store.h"

namespace vok {
namespace {

/// Calls `read` with the table's row of that name; false when there is none.
template <typename Read>
bool ReadSet(const Host& host, const Environment& environment, const std::string& table,
             const std::string& name, Read read) {
  const auto connection = OpenSettings(host, environment);
  const auto rows =
      connection->Query(NamedSetStatement("SELECT * FROM " + table + " WHERE setname like ", name));
  const bool found = rows->Count() > 0;
  if (found) read(SetRow(*rows, table, NullRule::kFails));
  rows->Close();
  return found;
}

}  // namespace

std::optional<DataSourceSetting> ReadEditedDataSource(const Host& host,
                                                      const Environment& environment,
                                                      const std::string& name) {
  UpgradeQty(host, environment);
  DataSourceSetting setting;
  const bool found = ReadSet(host, environment, "DataSourceInfo", name, [&](const SetRow& row) {
    ReadInfoRow(row, setting);
    setting.VarnelMDB = row.Text("VarnelMDB");
  });
  if (!found) return std::nullopt;
  ReadSet(host, environment, "MoneySetsMeasures", name,
          [&](const SetRow& row) { ReadMoneyRow(row, setting, NullRule::kIsEmpty); });
  return setting;
}

std::optional<PeriodSet> ReadEditedPeriods(const Host& host, const Environment& environment,
                                           const std::string& name) {
  PeriodSet set;
  const bool found = ReadSet(host, environment, "Periods", name,
                             [&](const SetRow& row) { ReadPeriodsRow(row, set); });
  return found ? std::optional(set) : std::nullopt;
}

}  // namespace vok
