#include "cli/settings_document.h"

#include <utility>

#include "cli/json_entries.h"
#include "cli/print.h"
#include "platform/failure.h"

namespace vok::cli {
namespace {

/// Any name that a set can be stored under, so that what was exported can be imported.
std::string NameEntry(const Node& node) {
  const auto entry = Entry(node, "SetName");
  if (!entry) node.Fail(failure_number::kTypeMismatch, "needs a SetName");
  return Text(*entry);
}

int16_t CountEntry(const Node& node, std::string_view name) {
  const auto entry = Entry(node, name);
  if (!entry) return 0;
  if (!entry->json.is_number_integer() || entry->json.get<double>() < INT16_MIN ||
      entry->json.get<double>() > INT16_MAX) {
    entry->Fail(failure_number::kTypeMismatch, "must be a whole number from -32768 to 32767");
  }
  return entry->json.get<int16_t>();
}

Date DateEntry(const Node& node, std::string_view name) {
  const auto entry = Entry(node, name);
  if (!entry) return {};
  const std::string text = Text(*entry);
  if (text.empty()) return {};
  const auto date = ParseIsoDate(text);
  if (!date) {
    entry->Fail(
        failure_number::kTypeMismatch,
        "is " + Quoted(text) + ", which is not a date; write it as 2024-01-31, or \"\" for none");
  }
  return *date;
}

MoneySetEntry ReadMoneySet(const Node& node) {
  ExpectObject(node, {"MoneySet", "Measure", "Qty", "IsCalculated"});
  MoneySetEntry entry;
  const auto money_set = Entry(node, "MoneySet");
  entry.MoneySet = money_set ? Value(Text(*money_set)) : Value(Null{});
  entry.Measure = TextEntry(node, "Measure");
  entry.Qty = TextEntry(node, "Qty");
  entry.IsCalculated = FlagEntry(node, "IsCalculated");
  return entry;
}

DataSourceSetting ReadDataSource(const Node& node) {
  ExpectObject(node, {"SetName", "VarnelMDB", "CubeFile", "CubeName", "OBS", "ActFile",
                      "CountMoney", "MoneySets"});
  DataSourceSetting setting;
  setting.SetName = NameEntry(node);
  setting.VarnelMDB = TextEntry(node, "VarnelMDB");
  setting.CubeFile = TextEntry(node, "CubeFile");
  setting.CubeName = TextEntry(node, "CubeName");
  setting.OBS = TextEntry(node, "OBS");
  setting.ActFile = TextEntry(node, "ActFile");
  setting.CountMoney = CountEntry(node, "CountMoney");
  for (auto& money_set : setting.MoneySets) money_set.MoneySet = Null{};
  ArrayEntry(node, "MoneySets", kMoneySetCount,
             [&](const Node& item, std::size_t i) { setting.MoneySets[i] = ReadMoneySet(item); });
  return setting;
}

PeriodEntry ReadPeriod(const Node& node) {
  ExpectObject(node, {"PeriodName", "FromDate", "UntillDate", "includeOpenBalans"});
  PeriodEntry period;
  period.PeriodName = TextEntry(node, "PeriodName");
  period.FromDate = DateEntry(node, "FromDate");
  period.UntilDate = DateEntry(node, "UntillDate");
  period.IncludeOpenBalance = FlagEntry(node, "includeOpenBalans");
  return period;
}

PeriodSet ReadPeriodSet(const Node& node) {
  ExpectObject(node, {"SetName", "Periods"});
  PeriodSet set;
  set.SetName = NameEntry(node);
  ArrayEntry(node, "Periods", kPeriodCount,
             [&](const Node& item, std::size_t i) { set.Periods[i] = ReadPeriod(item); });
  return set;
}

Json PrintDataSource(const DataSourceSetting& setting) {
  Json money_sets = Json::array();
  for (const auto& entry : setting.MoneySets) {
    money_sets.push_back(
        {{"MoneySet", entry.MoneySet.IsNull() ? Json() : Json(entry.MoneySet.ToText())},
         {"Measure", entry.Measure},
         {"Qty", entry.Qty},
         {"IsCalculated", entry.IsCalculated}});
  }
  return {{"SetName", setting.SetName},
          {"VarnelMDB", setting.VarnelMDB},
          {"CubeFile", setting.CubeFile},
          {"CubeName", setting.CubeName},
          {"OBS", setting.OBS},
          {"ActFile", setting.ActFile},
          {"CountMoney", setting.CountMoney},
          {"MoneySets", std::move(money_sets)}};
}

Json PrintPeriodSet(const PeriodSet& set) {
  Json periods = Json::array();
  for (const auto& period : set.Periods) {
    periods.push_back({{"PeriodName", period.PeriodName},
                       {"FromDate", IsoDate(period.FromDate)},
                       {"UntillDate", IsoDate(period.UntilDate)},
                       {"includeOpenBalans", period.IncludeOpenBalance}});
  }
  return {{"SetName", set.SetName}, {"Periods", std::move(periods)}};
}

}  // namespace

SettingsDocument ParseSettingsDocument(std::string_view json, const std::string& origin) {
  const Json parsed = ParseJson(json, origin, "a settings document");
  const Node root{parsed, origin, ""};
  ExpectObject(root, {"dataSources", "periods"});
  SettingsDocument document;
  ArrayEntry(root, "dataSources", SIZE_MAX, [&](const Node& item, std::size_t) {
    document.data_sources.push_back(ReadDataSource(item));
  });
  ArrayEntry(root, "periods", SIZE_MAX, [&](const Node& item, std::size_t) {
    document.periods.push_back(ReadPeriodSet(item));
  });
  return document;
}

std::string PrintSettingsDocument(const SettingsDocument& document) {
  Json data_sources = Json::array();
  for (const auto& setting : document.data_sources)
    data_sources.push_back(PrintDataSource(setting));
  Json periods = Json::array();
  for (const auto& set : document.periods) periods.push_back(PrintPeriodSet(set));
  return JsonText({{"dataSources", std::move(data_sources)}, {"periods", std::move(periods)}});
}

}  // namespace vok::cli
