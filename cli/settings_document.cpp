#include "cli/settings_document.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <set>
#include <utility>

#include "cli/print.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace vok::cli {
namespace {

constexpr std::size_t kMaxTextUnits = 255;  // of every text column of the settings database

/// A value and the path that leads to it, for messages.
struct Node {
  const Json& json;
  std::string origin;
  std::string path;

  [[noreturn]] void Fail(int32_t number, const std::string& what) const {
    throw Failure(number, origin + ": " + (path.empty() ? "the document" : path) + " " + what);
  }
};

std::string Join(const std::string& path, std::string_view name) {
  return path.empty() ? std::string(name) : path + "." + std::string(name);
}

void ExpectObject(const Node& node, std::initializer_list<std::string_view> names) {
  if (!node.json.is_object()) node.Fail(failure_number::kTypeMismatch, "must be an object {…}");
  for (const auto& item : node.json.items()) {
    if (std::find(names.begin(), names.end(), item.key()) == names.end()) {
      std::string known;
      for (const auto name : names) known += (known.empty() ? "" : ", ") + std::string(name);
      node.Fail(failure_number::kTypeMismatch,
                "has an unknown entry " + Quoted(item.key()) + "; known are " + known);
    }
  }
}

/// The entry of that name, or nothing when it is absent or null.
std::optional<Node> Entry(const Node& node, std::string_view name) {
  const auto found = node.json.find(std::string(name));
  if (found == node.json.end() || found->is_null()) return std::nullopt;
  return Node{*found, node.origin, Join(node.path, name)};
}

std::string Text(const Node& node) {
  if (!node.json.is_string()) node.Fail(failure_number::kTypeMismatch, "must be a text");
  auto text = node.json.get<std::string>();
  if (Utf16Length(text) > kMaxTextUnits) {
    node.Fail(failure_number::kTypeMismatch, "is longer than 255 characters; shorten it");
  }
  if (text.find('\0') != std::string::npos) {
    node.Fail(failure_number::kTypeMismatch, "holds a NUL character; remove it");
  }
  return text;
}

std::string TextEntry(const Node& node, std::string_view name) {
  const auto entry = Entry(node, name);
  return entry ? Text(*entry) : std::string();
}

/// Any name that a set can be stored under, so that what was exported can be imported.
std::string NameEntry(const Node& node) {
  const auto entry = Entry(node, "SetName");
  if (!entry) node.Fail(failure_number::kTypeMismatch, "needs a SetName");
  return Text(*entry);
}

bool FlagEntry(const Node& node, std::string_view name) {
  const auto entry = Entry(node, name);
  if (!entry) return false;
  if (!entry->json.is_boolean()) {
    entry->Fail(failure_number::kTypeMismatch, "must be true or false");
  }
  return entry->json.get<bool>();
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

/// Reads the array entry `name` of at most `limit` elements, each by `read`.
template <typename Read>
void ArrayEntry(const Node& node, std::string_view name, std::size_t limit, Read read) {
  const auto entry = Entry(node, name);
  if (!entry) return;
  if (!entry->json.is_array()) {
    entry->Fail(failure_number::kTypeMismatch, "must be an array […]");
  }
  if (entry->json.size() > limit) {
    entry->Fail(failure_number::kSubscript, "has " + std::to_string(entry->json.size()) +
                                                " entries; at most " + std::to_string(limit) +
                                                " are possible");
  }
  for (std::size_t i = 0; i < entry->json.size(); ++i) {
    read(Node{entry->json[i], node.origin, entry->path + "[" + std::to_string(i) + "]"}, i);
  }
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

/// Reads a JSON text; an object that names an entry twice is refused, since one of the two would be
/// lost.
Json ParseJson(std::string_view text, const std::string& origin) {
  std::vector<std::set<std::string>> open_objects;
  const auto watch = [&](int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) open_objects.emplace_back();
    if (event == Json::parse_event_t::object_end) open_objects.pop_back();
    if (event == Json::parse_event_t::key &&
        !open_objects.back().insert(parsed.get<std::string>()).second) {
      throw Failure(failure_number::kTypeMismatch, origin + ": the entry " +
                                                       Quoted(parsed.get<std::string>()) +
                                                       " is there twice in one object");
    }
    return true;
  };
  try {
    return Json::parse(text, watch);
  } catch (const Json::exception& error) {
    throw Failure(failure_number::kInvalidCall,
                  origin + " is not a settings document: " + std::string(error.what()));
  }
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
  const Json parsed = ParseJson(json, origin);
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
