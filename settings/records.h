// The in-memory form of the two kinds of named settings.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/date.h"
#include "platform/value.h"

namespace vok {

inline constexpr int kMoneySetCount = 13;  // money sets are numbered 0 to 12
inline constexpr int kPeriodCount = 12;    // periods are numbered 1 to 12

struct MoneySetEntry {
  Value MoneySet;  ///< text, or NULL when the money set is not defined
  std::string Measure;
  std::string Qty;
  bool IsCalculated = false;
};

struct DataSourceSetting {
  std::string SetName;
  std::string CubeFile;
  std::string CubeName;
  std::string OBS;  ///< member under [ActX].[xlFile].[All] that filters every query
  std::string ActFile;
  std::string AccFile;
  std::string VarnelMDB;  ///< stored and shown, not read by the query run
  int16_t CountMoney = 0;
  std::array<MoneySetEntry, kMoneySetCount> MoneySets;
};

struct PeriodEntry {
  std::string PeriodName;
  Date FromDate;  ///< the zero date when not set, like `UntilDate`
  Date UntilDate;
  bool IncludeOpenBalance = false;
};

struct PeriodSet {
  std::string SetName;
  std::array<PeriodEntry, kPeriodCount> Periods;

  /// Period `number`, 1 to 12.
  PeriodEntry& Period(int number) { return Periods.at(static_cast<std::size_t>(number - 1)); }
  const PeriodEntry& Period(int number) const {
    return Periods.at(static_cast<std::size_t>(number - 1));
  }
};

/// The settings of the current run; they keep their last values between runs.
struct CurrentSettings {
  DataSourceSetting data_source;
  PeriodSet periods;
};

}  // namespace vok
