#include "settings/exact_sets.h"

#include <memory>
#include <set>

#include "platform/failure.h"
#include "settings/set_rows.h"
#include "settings/settings_database.h"
#include "settings/settings_tables.h"

namespace vok {
namespace {

/// Runs `statements` on the opened database as one change.
template <typename Statements>
void Change(const Host& host, const Environment& environment, Statements statements) {
  const auto connection = OpenSettings(host, environment);
  Transaction change(*connection, Purpose::kChange);
  statements(*connection);
  change.Commit();
}

std::unique_ptr<Rows> RowsOf(Connection& connection, const std::string& table,
                             const std::string& name) {
  return connection.Query(ExactSetStatement("SELECT * FROM " + table + " WHERE setname = ", name));
}

void DeleteRows(Connection& connection, const std::string& table, const std::string& name) {
  connection.Execute(ExactSetStatement("DELETE * FROM " + table + " WHERE setname = ", name));
}

/// A table that sets are imported into, opened once for all of them.
class ImportedTable {
 public:
  ImportedTable(Connection& connection, const Locale& locale, std::string table)
      : connection_(connection),
        locale_(locale),
        table_(std::move(table)),
        rows_(connection_.OpenTable(table_)) {
    for (; !rows_->AtEnd(); rows_->MoveNext()) names_.insert(KeyOf(rows_->Field("SetName")));
  }

  void Replace(const Fields& fields) {
    const Value& name = fields.front().second;
    if (names_.contains(KeyOf(name))) DeleteRows(connection_, table_, name.ToText());
    rows_->Add(fields);
  }

 private:
  std::string KeyOf(const Value& name) const { return locale_.FoldCase(name.ToText()); }

  Connection& connection_;
  const Locale& locale_;
  std::string table_;
  std::unique_ptr<WritableTable> rows_;
  std::set<std::string> names_;  ///< folded; stored before the import
};

template <typename Sets, typename Replace>
void ReplaceEach(const Sets& sets, const std::string& kind, Replace replace) {
  for (const auto& set : sets) {
    try {
      replace(set);
    } catch (const Failure& failure) {
      throw WhileSaving(failure, kind, set.SetName);
    }
  }
}

std::vector<Fields> StoredFields(Rows& rows) {
  std::vector<Fields> stored;
  for (; !rows.AtEnd(); rows.MoveNext()) {
    Fields& fields = stored.emplace_back();
    for (int32_t i = 0; i < rows.FieldCount(); ++i) {
      fields.emplace_back(rows.FieldName(i), rows.Field(i));
    }
  }
  return stored;
}

bool RenameRows(const Locale& locale, Connection& connection, const std::string& table,
                const std::string& name, const std::string& new_name) {
  std::vector<Fields> stored = StoredFields(*RowsOf(connection, table, name));
  DeleteRows(connection, table, name);
  const auto rows = connection.OpenTable(table);
  for (Fields& fields : stored) {
    for (auto& [field, value] : fields) {
      if (EqualNoCase(locale, field, "SetName")) value = new_name;
    }
    rows->Add(fields);
  }
  return !stored.empty();
}

void RefuseTaken(Connection& connection, const std::string& table, const std::string& name) {
  if (RowsOf(connection, table, name)->Count() == 0) return;
  throw Failure(failure_number::kIntegrity, "There is a saved set named \"" + name +
                                                "\" already; choose another name or delete it");
}

}  // namespace

void ImportSets(const Host& host, const Environment& environment,
                const std::vector<DataSourceSetting>& data_sources,
                const std::vector<PeriodSet>& period_sets) {
  Change(host, environment, [&](Connection& connection) {
    AddQtyColumns(host, connection);
    ImportedTable info(connection, host.locale, "DataSourceInfo");
    ImportedTable money(connection, host.locale, "MoneySetsMeasures");
    ImportedTable periods(connection, host.locale, "Periods");
    ReplaceEach(data_sources, kDataSourceWords, [&](const DataSourceSetting& setting) {
      info.Replace(InfoFields(setting));
      money.Replace(MoneyFields(setting));
    });
    ReplaceEach(period_sets, kPeriodSetWords,
                [&](const PeriodSet& set) { periods.Replace(PeriodFields(set)); });
  });
}

bool DeleteExactSet(const Host& host, const Environment& environment, const std::string& name,
                    const std::string& kind) {
  bool found = false;
  Change(host, environment, [&](Connection& connection) {
    for (const char* table : TablesOfKind(host.locale, kind)) {
      found |= RowsOf(connection, table, name)->Count() > 0;
      DeleteRows(connection, table, name);
    }
  });
  return found;
}

bool RenameSet(const Host& host, const Environment& environment, const std::string& name,
               const std::string& new_name, const std::string& kind) {
  CheckSetName(WordsForKind(host.locale, kind), new_name);
  const bool same_key = EqualNoCase(host.locale, name, new_name);
  bool found = false;
  Change(host, environment, [&](Connection& connection) {
    for (const char* table : TablesOfKind(host.locale, kind)) {
      if (!same_key) RefuseTaken(connection, table, new_name);
      found |= RenameRows(host.locale, connection, table, name, new_name);
    }
  });
  return found;
}

}  // namespace vok
