#include "settings/exact_sets.h"

#include <memory>
#include <set>

#include "platform/failure.h"
#include "settings/schema.h"
#include "settings/set_fields.h"
#include "settings/set_names.h"
#include "settings/store.h"

namespace vok {
namespace {

/// Runs `statements` on the opened database as one change.
template <typename Statements>
void Change(const Host& host, const Environment& environment, Statements statements) {
  objRs store = OpenSettings(host, environment);
  SaveGroup group(store.OpenedConnection(), &Connection::BeginChange);
  statements(store);
  group.Commit();
}

std::unique_ptr<Recordset> RowsOf(objRs& store, const std::string& table, const std::string& name) {
  store.SQL = ExactSetStatement("SELECT * FROM " + table + " WHERE setname = ", name);
  return store.GetRsReadOnly();
}

void DeleteRows(objRs& store, const std::string& table, const std::string& name) {
  store.SQL = ExactSetStatement("DELETE * FROM " + table + " WHERE setname = ", name);
  store.RunCommand();
}

/// A table that sets are imported into, opened once for all of them.
class ImportedTable {
 public:
  ImportedTable(objRs& store, const Locale& locale, std::string table)
      : store_(store), locale_(locale), table_(std::move(table)) {
    store_.SQL = table_;
    rows_ = store_.GetRs();
    for (; !rows_->EndOfFile(); rows_->MoveNext()) names_.insert(KeyOf(rows_->Field("SetName")));
  }

  void Replace(const Fields& fields) {
    const Value& name = fields.front().second;
    if (names_.contains(KeyOf(name))) DeleteRows(store_, table_, name.ToText());
    AddRow(*rows_, fields);
  }

 private:
  std::string KeyOf(const Value& name) const { return locale_.FoldCase(name.ToText()); }

  objRs& store_;
  const Locale& locale_;
  std::string table_;
  std::unique_ptr<Recordset> rows_;
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

std::vector<Fields> StoredFields(Recordset& rows) {
  std::vector<Fields> stored;
  for (; !rows.EndOfFile(); rows.MoveNext()) {
    Fields& fields = stored.emplace_back();
    for (int32_t i = 0; i < rows.FieldCount(); ++i) {
      fields.emplace_back(rows.FieldName(i), rows.Field(i));
    }
  }
  return stored;
}

bool RenameRows(const Locale& locale, objRs& store, const std::string& table,
                const std::string& name, const std::string& new_name) {
  const std::vector<Fields> stored = StoredFields(*RowsOf(store, table, name));
  DeleteRows(store, table, name);
  store.SQL = table;
  const auto rows = store.GetRs();
  for (Fields fields : stored) {
    for (auto& [field, value] : fields) {
      if (EqualNoCase(locale, field, "SetName")) value = new_name;
    }
    AddRow(*rows, fields);
  }
  return !stored.empty();
}

void RefuseTaken(objRs& store, const std::string& table, const std::string& name) {
  if (RowsOf(store, table, name)->RecordCount() == 0) return;
  throw Failure(failure_number::kIntegrity, "There is a saved set named \"" + name +
                                                "\" already; choose another name or delete it");
}

}  // namespace

void ImportSets(const Host& host, const Environment& environment,
                const std::vector<DataSourceSetting>& data_sources,
                const std::vector<PeriodSet>& period_sets) {
  Change(host, environment, [&](objRs& store) {
    AddQtyColumns(host, store.OpenedConnection());
    ImportedTable info(store, host.locale, "DataSourceInfo");
    ImportedTable money(store, host.locale, "MoneySetsMeasures");
    ImportedTable periods(store, host.locale, "Periods");
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
  Change(host, environment, [&](objRs& store) {
    for (const char* table : TablesOfKind(host.locale, kind)) {
      found |= RowsOf(store, table, name)->RecordCount() > 0;
      DeleteRows(store, table, name);
    }
  });
  return found;
}

bool RenameSet(const Host& host, const Environment& environment, const std::string& name,
               const std::string& new_name, const std::string& kind) {
  CheckSetName(WordsForKind(host.locale, kind), new_name);
  const bool same_key = EqualNoCase(host.locale, name, new_name);
  bool found = false;
  Change(host, environment, [&](objRs& store) {
    for (const char* table : TablesOfKind(host.locale, kind)) {
      if (!same_key) RefuseTaken(store, table, new_name);
      found |= RenameRows(host.locale, store, table, name, new_name);
    }
  });
  return found;
}

}  // namespace vok
