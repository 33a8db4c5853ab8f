#include "tests/support/cubes/sample_cube.h"

#include <array>
#include <fstream>

#include "providers/posix/icu_locale.h"
#include "providers/posix/posix_files.h"

namespace vok::test {
namespace {

constexpr const char* kLedgerSchema = R"(<?xml version="1.0" encoding="UTF-8"?>
<Schema name="Ledger">
  <Cube name="QEL" defaultMeasure="Amount">
    <Table name="fact"/>
    <Dimension name="Date" type="TimeDimension" foreignKey="date_id">
      <Hierarchy hasAll="true" allMemberName="All" primaryKey="date_id">
        <Table name="dim_date"/>
        <Level name="Year" column="y" type="Integer" levelType="TimeYears" uniqueMembers="true"/>
        <Level name="Quarter" column="q" type="Integer" levelType="TimeQuarters"/>
        <Level name="Month" column="m" type="Integer" levelType="TimeMonths"/>
      </Hierarchy>
    </Dimension>
    <Dimension name="QeL" foreignKey="qel_id">
      <Hierarchy name="QeL" hasAll="false" primaryKey="qel_id">
        <Table name="dim_qel"/>
        <Level name="QeL" column="caption" ordinalColumn="ord" uniqueMembers="true"/>
      </Hierarchy>
    </Dimension>
)";

constexpr const char* kLedgerRest = R"(    <Dimension name="MoneySet" foreignKey="money_id">
      <Hierarchy hasAll="true" allMemberName="All" primaryKey="money_id">
        <Table name="dim_money"/>
        <Level name="MoneySet" column="code" uniqueMembers="true"/>
      </Hierarchy>
    </Dimension>
    <Measure name="Amount" column="amount" aggregator="sum" formatString="#,##0.00"/>
    <Measure name="Units" column="units" aggregator="sum" formatString="#,##0.00"/>
    <Measure name="Facts" column="fact_id" aggregator="count" formatString="#,##0"/>
  </Cube>
</Schema>
)";

constexpr const char* kLines =
    "qel_id,caption,ord\n"
    "1,100\tSales\tמכירות\tПродажи\tErlöse,1\n"
    "2,110\tReturns\tהחזרות\tВозвраты\tRetouren,2\n"
    "3,\"200\tPurchases, \"\"net\"\"\t\t\tEinkäufe\",3\n"
    "4,300\tWages\tשכר\tЗарплата\tLöhne,4\n"
    "5,310\tRent ]\t\t\tMiete,5\n"
    "6,900\tUnused\t\t\t,6\n";

constexpr const char* kAccounts =
    "act_id,ledger,file\n"
    "1,Ledger1,File1\n2,Ledger1,File2\n3,Ledger1,File3\n"
    "4,Ledger2,File1\n5,Ledger2,File2\n6,Ledger2,File3\n";

constexpr int kMonths = 18;

std::string Months() {
  std::string text = "date_id,y,q,m\n";
  for (int index = 0; index < kMonths; ++index) {
    const int month = index % 12 + 1;
    text += std::to_string(index) + "," + std::to_string(2009 + index / 12) + "," +
            std::to_string((month + 2) / 3) + "," + std::to_string(month) + "\n";
  }
  return text;
}

std::string Facts() {
  constexpr int kRows = 240;
  std::string text = "fact_id,date_id,qel_id,act_id,ob,money_id,amount,units\n";
  for (int row = 0; row < kRows; ++row) {
    // Every odd row of line 2 takes back the row before it.
    const int origin = row % 10 == 1 ? row - 1 : row;
    const int line = origin % 10 == 0 ? 2 : 1 + origin * 3 % 5;
    const int cents = (origin * 7919 % 20011) - 9000;
    const std::string sign = (origin == row) == (cents < 0) ? "-" : "";
    const int size = cents < 0 ? -cents : cents;
    text += std::to_string(row + 1) + "," + std::to_string(origin * 5 % kMonths) + "," +
            std::to_string(line) + "," + std::to_string(1 + origin % 6) + "," +
            std::to_string(origin % 7 == 0 ? 1 : 0) + "," + std::to_string(origin % 3) + "," +
            sign + std::to_string(size / 100) + "." + std::to_string(size % 100 / 10) +
            std::to_string(size % 10) + "," +
            (row % 4 == 3 ? std::string() : std::to_string(row % 13)) + "\n";
  }
  return text;
}

}  // namespace

olap::BuildReport BuildInto(const TemporaryFolder& folder, const CubeTexts& texts) {
  const auto write = [&](const std::string& name, const std::string& text) {
    std::ofstream(folder.File(name), std::ios::binary) << text;
  };
  write("schema.xml", texts.schema);
  for (const auto& [name, text] : texts.tables) write(name + ".csv", text);
  PosixFiles files;
  return olap::BuildCubeFile(files, IcuLocale("en_US"),
                             {folder.File("schema.xml"), folder.path(), folder.File("sample.cub")},
                             {});
}

BuiltCube::BuiltCube(const CubeTexts& texts)
    : report_(BuildInto(folder_, texts)), file_(olap::CubeFile::Open(PosixFiles(), path())) {}

CubeTexts SampleLedger() {
  return {std::string(kLedgerSchema) + kFilesAndOpenings + kLedgerRest,
          {{"dim_date", Months()},
           {"dim_qel", kLines},
           {"dim_act", kAccounts},
           {"dim_ob", "ob\n0\n1\n"},
           {"dim_money", "money_id,code\n0,NIS\n1,EUR\n2,USD\n"},
           {"fact", Facts()}}};
}

}  // namespace vok::test
