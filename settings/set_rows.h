// Stored rows of settings as records, and records as the fields of stored rows.
#pragma once

#include <string>

#include "platform/database.h"
#include "settings/records.h"

namespace vok {

/// What a NULL that is read as a text, number, flag or date is. Where it is empty, so is a field
/// that the database does not have: one of an older shape.
enum class NullRule { kFails, kIsEmpty };

/// The current one of rows. A field that cannot be read fails with the number that the
/// platform gives (94 for NULL, 3265 for a field that is not there); the text names the field, the
/// table and the set.
class SetRow {
 public:
  SetRow(const Rows& rows, std::string table, NullRule null_rule)
      : rows_(rows), table_(std::move(table)), null_rule_(null_rule) {}

  Value Any(const std::string& field) const;  ///< NULL stays NULL
  std::string Text(const std::string& field) const { return Text(field, null_rule_); }
  std::string Text(const std::string& field, NullRule null_rule) const;
  int16_t Int16(const std::string& field) const;
  bool Flag(const std::string& field) const;
  Date Day(const std::string& field) const;

 private:
  Value Stored(const std::string& field, NullRule null_rule) const;
  template <typename Reading>
  auto Read(const std::string& field, NullRule null_rule, Reading reading) const;

  const Rows& rows_;
  std::string table_;
  NullRule null_rule_;
};

/// Each reads its fields in the order of the stored columns and leaves what it has read when a
/// later field fails.
void ReadInfoRow(const SetRow& row, DataSourceSetting& setting);
/// `null_quantity`: for the quantities alone, which rows from before their columns may not have.
void ReadMoneyRow(const SetRow& row, DataSourceSetting& setting, NullRule null_quantity);
/// All dates are cleared first; a NULL name leaves the name of its period.
void ReadPeriodsRow(const SetRow& row, PeriodSet& set);

/// Dates that are not set are the zero date.
Fields PeriodFields(const PeriodSet& set);
/// Without the money sets; `AccFile` is always empty.
Fields InfoFields(const DataSourceSetting& setting);
/// An empty `Measure` is that of money set 0, a `MoneySet` that is not set NULL.
Fields MoneyFields(const DataSourceSetting& setting);

}  // namespace vok
