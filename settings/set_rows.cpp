#include "settings/set_rows.h"

#include "platform/failure.h"

namespace vok {
namespace {

Failure Located(const Failure& failure, const std::string& field, const std::string& table,
                const std::string& set) {
  return Failure(failure.number(),
                 failure.description() + " (field " + field + " of the table " + table +
                     ", set \"" + set + "\"; save the set again)",
                 failure.source(), failure.section());
}

std::string SetNameOf(const Rows& rows) {
  const Value name = rows.Field("SetName");
  return name.IsNull() ? std::string() : name.ToText();
}

}  // namespace

Value SetRow::Stored(const std::string& field, NullRule null_rule) const {
  const bool may_miss = null_rule == NullRule::kIsEmpty;
  try {
    const Value value = rows_.Field(field);
    return value.IsNull() && may_miss ? Value() : value;
  } catch (const Failure& failure) {
    if (!may_miss || failure.number() != failure_number::kItemNotFound) throw;
    return Value();
  }
}

template <typename Reading>
auto SetRow::Read(const std::string& field, NullRule null_rule, Reading reading) const {
  try {
    return reading(Stored(field, null_rule));
  } catch (const Failure& failure) {
    throw Located(failure, field, table_, SetNameOf(rows_));
  }
}

Value SetRow::Any(const std::string& field) const { return rows_.Field(field); }

std::string SetRow::Text(const std::string& field, NullRule null_rule) const {
  return Read(field, null_rule, [](const Value& value) { return value.ToText(); });
}

int16_t SetRow::Int16(const std::string& field) const {
  return Read(field, null_rule_, [](const Value& value) { return value.ToInt16(); });
}

bool SetRow::Flag(const std::string& field) const {
  return Read(field, null_rule_, [](const Value& value) { return value.ToBoolean(); });
}

Date SetRow::Day(const std::string& field) const {
  return Read(field, null_rule_, [](const Value& value) { return value.ToDate(); });
}

void ReadInfoRow(const SetRow& row, DataSourceSetting& setting) {
  setting.CubeFile = row.Text("CubeFile");
  setting.CubeName = row.Text("CubeName");
  setting.OBS = row.Text("OBs");
  setting.ActFile = row.Text("ActFile");
  setting.AccFile = row.Text("AccFile");
  setting.SetName = row.Text("SetName");
}

void ReadMoneyRow(const SetRow& row, DataSourceSetting& setting, NullRule null_quantity) {
  setting.CountMoney = row.Int16("CountMoney");
  for (int i = 0; i < kMoneySetCount; ++i) {
    MoneySetEntry& entry = setting.MoneySets[static_cast<std::size_t>(i)];
    const std::string number = std::to_string(i);
    entry.MoneySet = row.Any("MoneySets" + number);
    entry.Measure = row.Text("Measure" + number);
    entry.Qty = row.Text("Qty" + number, null_quantity);
    entry.IsCalculated = row.Flag("IsCalculated" + number);
  }
}

void ReadPeriodsRow(const SetRow& row, PeriodSet& set) {
  for (PeriodEntry& period : set.Periods) period.FromDate = period.UntilDate = Date{};
  set.SetName = row.Text("SetName");
  for (int i = 1; i <= kPeriodCount; ++i) {
    PeriodEntry& period = set.Period(i);
    const std::string number = std::to_string(i);
    const Value name = row.Any("PeriodName" + number);
    if (!name.IsNull()) period.PeriodName = name.ToText();
    period.FromDate = row.Day("FromDate" + number);
    period.UntilDate = row.Day("UntillDate" + number);
    period.IncludeOpenBalance = row.Flag("includeOpenBalans" + number);
  }
}

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
