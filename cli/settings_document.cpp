#include "cli/settings_document.h"

#include <algorithm>
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

/// A money set of which nothing is said: it measures as the first one does.
MoneySetEntry Inherited(MoneySetEntry first) {
  first.MoneySet = Null{};
  return first;
}

/// `otherwise` holds what is absent.
MoneySetEntry ReadMoneySet(const Node& node, const MoneySetEntry& otherwise) {
  ExpectObject(node, {"MoneySet", "Measure", "Qty", "IsCalculated"});
  MoneySetEntry entry;
  const auto money_set = Entry(node, "MoneySet");
  entry.MoneySet = money_set ? Value(Text(*money_set)) : Value(Null{});
  entry.Measure = TextEntry(node, "Measure", otherwise.Measure);
  entry.Qty = TextEntry(node, "Qty", otherwise.Qty);
  const bool same = entry.Measure == otherwise.Measure;
  entry.IsCalculated = FlagEntry(node, "IsCalculated", same && otherwise.IsCalculated);
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
  ArrayEntry(node, "MoneySets", kMoneySetCount, [&](const Node& item, std::size_t i) {
    setting.MoneySets[i] = ReadMoneySet(item, setting.MoneySets[i]);
    if (i == 0)
      std::fill(setting.MoneySets.begin() + 1, setting.MoneySets.end(),
                Inherited(setting.MoneySets[0]));
  });
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

/// Adds the entry unless it says no more than its absence.
template <typename Item>
void Put(Json& object, const char* name, const Item& item, const Item& otherwise = {}) {
  if (item != otherwise) object[name] = item;
}

/// Adds the array without the empty objects at its end.
void PutArray(Json& object, const char* name, Json array) {
  while (!array.empty() && array.back().empty()) array.erase(array.size() - 1);
  if (!array.empty()) object[name] = std::move(array);
}

Json PrintMoneySet(const MoneySetEntry& entry, const MoneySetEntry& otherwise) {
  Json object = Json::object();
  if (!entry.MoneySet.IsNull()) object["MoneySet"] = entry.MoneySet.ToText();
  Put(object, "Measure", entry.Measure, otherwise.Measure);
  Put(object, "Qty", entry.Qty, otherwise.Qty);
  const bool same = entry.Measure == otherwise.Measure;
  Put(object, "IsCalculated", entry.IsCalculated, same && otherwise.IsCalculated);
  return object;
}

Json PrintDataSource(const DataSourceSetting& setting) {
  Json money_sets = Json::array();
  for (const MoneySetEntry& entry : setting.MoneySets) {
    const bool first = money_sets.empty();
    money_sets.push_back(PrintMoneySet(entry, first ? MoneySetEntry{} : setting.MoneySets[0]));
  }
  Json object = {{"SetName", setting.SetName}};
  Put(object, "VarnelMDB", setting.VarnelMDB);
  Put(object, "CubeFile", setting.CubeFile);
  Put(object, "CubeName", setting.CubeName);
  Put(object, "OBS", setting.OBS);
  Put(object, "ActFile", setting.ActFile);
  Put(object, "CountMoney", setting.CountMoney);
  PutArray(object, "MoneySets", std::move(money_sets));
  return object;
}

Json PrintPeriodSet(const PeriodSet& set) {
  Json periods = Json::array();
  for (const PeriodEntry& period : set.Periods) {
    Json& object = periods.emplace_back(Json::object());
    Put(object, "PeriodName", period.PeriodName);
    Put(object, "FromDate", IsoDate(period.FromDate));
    Put(object, "UntillDate", IsoDate(period.UntilDate));
    Put(object, "includeOpenBalans", period.IncludeOpenBalance);
  }
  Json object = {{"SetName", set.SetName}};
  PutArray(object, "Periods", std::move(periods));
  return object;
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
