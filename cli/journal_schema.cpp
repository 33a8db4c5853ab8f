#include "cli/journal_schema.h"

namespace vok::cli {
namespace {

/// Of an attribute; "" for a role without a column.
std::string ColumnOf(const JournalGuess& guess, Role role) {
  std::string escaped;
  for (const char c : guess.columns[static_cast<std::size_t>(role)]) {
    escaped += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '"' ? "&quot;" : std::string(1, c);
  }
  return escaped;
}

std::string Annotation(const std::string& name, const std::string& text) {
  return "    <Annotation name=\"" + name + "\">" + text + "</Annotation>\n";
}

std::string FormOf(const olap::CsvForm& form) {
  return "  <Annotations>\n" +
         Annotation("csv.separator",
                    form.separator == '\t' ? "tab" : std::string(1, form.separator)) +
         Annotation("csv.decimal", std::string(1, form.decimal)) +
         (form.dates.empty() ? "" : Annotation("csv.dates", form.dates)) + "  </Annotations>\n";
}

std::string Dates(const std::string& date) {
  return "    <Dimension name=\"Date\" type=\"TimeDimension\" foreignKey=\"" + date +
         R"(">
      <Hierarchy hasAll="true" allMemberName="All" primaryKey="date">
        <Table name="dates"/>
        <Level name="Year" column="year" type="Integer" levelType="TimeYears" uniqueMembers="true"/>
        <Level name="Quarter" column="quarter" type="Integer" levelType="TimeQuarters"/>
        <Level name="Month" column="month" type="Integer" levelType="TimeMonths"/>
        <Level name="Day" column="day" type="Integer" levelType="TimeDays"/>
      </Hierarchy>
    </Dimension>
)";
}

std::string Accounts(const std::string& account) {
  return "    <Dimension name=\"QeL\" foreignKey=\"" + account + R"(">
      <Hierarchy name="QeL" hasAll="false" primaryKey="account">
        <Table name="accounts"/>
        <Level name="Account" column="account" captionColumn="caption" uniqueMembers="true"/>
      </Hierarchy>
    </Dimension>
)";
}

/// Without a column of ledgers each day leads to the one ledger there is.
std::string Ledgers(const std::string& ledger, const std::string& date) {
  const bool is_one = ledger.empty();
  return "    <Dimension name=\"ActX\" foreignKey=\"" + (is_one ? date : ledger) +
         "\">\n      <Hierarchy name=\"xlFile\" hasAll=\"true\" allMemberName=\"All\"" +
         (is_one ? " primaryKey=\"date\">\n        <Table name=\"dates\"/>\n" : ">\n") +
         "        <Level name=\"Ledger\" column=\"" + (is_one ? "ledger" : ledger) +
         "\" uniqueMembers=\"true\"/>\n      </Hierarchy>\n    </Dimension>\n";
}

std::string Measure(const std::string& name, const std::string& column, const std::string& format) {
  if (column.empty()) return {};
  return "    <Measure name=\"" + name + "\" column=\"" + column +
         "\" aggregator=\"sum\" formatString=\"" + format + "\"/>\n";
}

}  // namespace

std::string SchemaOf(const JournalGuess& guess) {
  const auto column = [&guess](Role role) { return ColumnOf(guess, role); };
  const std::string date = column(Role::kDate);
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Schema name=\"Books\">\n" +
         FormOf(guess.form) + "  <Cube name=\"" + kJournalCube +
         "\">\n    <Table name=\"journal\"/>\n" + Dates(date) + Accounts(column(Role::kAccount)) +
         Ledgers(column(Role::kLedger), date) +
         Measure("Amount", column(Role::kAmount), "#,##0.00") +
         Measure("Quantity", column(Role::kQuantity), "#,##0") + "  </Cube>\n</Schema>\n";
}

}  // namespace vok::cli
