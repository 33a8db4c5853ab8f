#include "settings/set_fields.h"

namespace vok {

Fields PeriodFields(const PeriodSet& set) {
  Fields fields = {{"SetName", set.SetName}};
  const auto add = [&](const char* prefix, auto member) {
    for (int i = 1; i <= kPeriodCount; ++i) {
      fields.emplace_back(prefix + std::to_string(i), set.Period(i).*member);
    }
  };
  add("PeriodName", &PeriodEntry::PeriodName);
  add("FromDate", &PeriodEntry::FromDate);
  add("UntillDate", &PeriodEntry::UntilDate);
  add("includeOpenBalans", &PeriodEntry::IncludeOpenBalance);
  return fields;
}

Fields InfoFields(const DataSourceSetting& setting) {
  return {{"SetName", setting.SetName},
          {"VarnelMDB", setting.VarnelMDB},
          {"CubeFile", setting.CubeFile},
          {"CubeName", setting.CubeName},
          {"OBs", setting.OBS},
          {"ActFile", setting.ActFile},
          {"AccFile", ""}};
}

Fields MoneyFields(const DataSourceSetting& setting) {
  Fields fields = {{"SetName", setting.SetName}, {"CountMoney", setting.CountMoney}};
  const auto add = [&](const char* prefix, std::size_t i, Value value) {
    fields.emplace_back(prefix + std::to_string(i), std::move(value));
  };
  const auto& sets = setting.MoneySets;
  for (std::size_t i = 0; i < sets.size(); ++i) {
    add("Measure", i, sets[i].Measure.empty() ? sets[0].Measure : sets[i].Measure);
    add("IsCalculated", i, sets[i].IsCalculated);
  }
  for (std::size_t i = 0; i < sets.size(); ++i) {
    add("MoneySets", i, sets[i].MoneySet.IsEmpty() ? Value(Null{}) : sets[i].MoneySet);
  }
  for (std::size_t i = 0; i < sets.size(); ++i) add("Qty", i, sets[i].Qty);
  return fields;
}

}  // namespace vok
