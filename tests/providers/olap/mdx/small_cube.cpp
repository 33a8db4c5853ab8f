#include "tests/providers/olap/mdx/small_cube.h"

#include "providers/posix/icu_locale.h"

namespace vok::test {
namespace {

constexpr const char* kSchema = R"(<Schema name="Small">
  <Cube name="QEL" defaultMeasure="Amount">
    <Table name="fact"/>
    <Dimension name="Date" type="TimeDimension" foreignKey="date_id">
      <Hierarchy hasAll="true" allMemberName="All" primaryKey="date_id">
        <Table name="dim_date"/>
        <Level name="Year" column="y" type="Integer" levelType="TimeYears" uniqueMembers="true"/>
        <Level name="Month" column="m" type="Integer" levelType="TimeMonths"/>
      </Hierarchy>
    </Dimension>
    <Dimension name="QeL" foreignKey="line">
      <Hierarchy name="QeL" hasAll="true" allMemberName="All" primaryKey="line">
        <Table name="dim_line"/>
        <Level name="QeL" column="line" uniqueMembers="true"/>
      </Hierarchy>
    </Dimension>
)";

constexpr const char* kSchemaRest = R"(    <Dimension name="Area" foreignKey="area_id">
      <Hierarchy hasAll="false" primaryKey="area_id">
        <Table name="dim_area"/>
        <Level name="Section" column="section" uniqueMembers="true"/>
        <Level name="Item" column="item"/>
      </Hierarchy>
    </Dimension>
    <Measure name="Amount" column="amount" aggregator="sum" formatString="#,##0.00"/>
    <Measure name="Units" column="units" aggregator="sum"/>
    <CalculatedMember name="Per Unit" dimension="Measures" formatString="#0.0">
      <Formula>[Measures].[Amount] / [Measures].[Units]</Formula>
    </CalculatedMember>
    <CalculatedMember name="Late" hierarchy="[Date]" caption="Spring">
      <Formula>[Date].[2010].[3] + [Date].[2010].[4]</Formula>
      <CalculatedMemberProperty name="SOLVE_ORDER" value="-1"/>
    </CalculatedMember>
    <CalculatedMember name="Mixed" dimension="Measures" visible="false">
      <Formula>2 *
  -IIf([Measures].[Amount] > 1, "x", 1)</Formula>
    </CalculatedMember>
  </Cube>
</Schema>
)";

constexpr const char* kFacts =
    "date_id,line,act_id,ob,area_id,amount,units\n"
    "2,A,1,0,1,10.25,1\n"
    "3,A,1,0,1,5.5,2\n"
    "3,A,2,0,1,-5.5,3\n"
    "4,A,1,0,1,7,\n"
    "5,B,2,0,2,100,4\n"
    "5,C,1,0,1,0,0\n"
    "6,E],1,1,1,50,1\n"
    "4,B,3,0,2,1000,10\n"
    "6,B,1,0,1,2.5,\n"
    "1,E],1,1,3,76.7,1\n"
    "2,E],1,1,3,0.1,\n"
    "3,E],1,1,3,0.2,\n";

CubeTexts Texts() {
  return {std::string(kSchema) + kFilesAndOpenings + kSchemaRest,
          {{"dim_date",
            "date_id,y,m\n1,2009,11\n2,2009,12\n3,2010,1\n4,2010,2\n5,2010,3\n"
            "6,2010,4\n"},
           {"dim_line", "line\nA\nB\nC\nD\nE]\n"},
           {"dim_act", "act_id,ledger,file\n1,Ledger1,F1\n2,Ledger1,F2\n3,Ledger2,F1\n"},
           {"dim_ob", "ob\n0\n1\n"},
           {"dim_area", "area_id,section,item\n1,S1,I1\n2,S1,I2\n3,S2,I1\n"},
           {"fact", kFacts}}};
}

}  // namespace

std::shared_ptr<const olap::CubeView> ViewOf(const BuiltCube& built) {
  static const IcuLocale locale("en_US");
  return std::make_shared<const olap::CubeView>(
      std::shared_ptr<const olap::StoredCube>(built.shared_file(), &built.cube()), locale);
}

std::shared_ptr<const olap::CubeView> SmallCube() {
  static const BuiltCube built(Texts());
  return ViewOf(built);
}

}  // namespace vok::test
