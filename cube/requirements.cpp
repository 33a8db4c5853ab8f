#include "cube/requirements.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "cube/date_list.h"
#include "cube/discovery.h"
#include "cube/probe.h"
#include "platform/failure.h"

namespace vok {
namespace {

// Examples: names of tables and columns are the writer's own.
constexpr const char* kDateMend =
    R"(<Dimension name="Date" type="TimeDimension" foreignKey="date_id">)";
constexpr const char* kDateHierarchyMend =
    R"(<Hierarchy hasAll="true" allMemberName="All" primaryKey="date_id">)";
constexpr const char* kDateLevelsMend =
    R"(<Level name="Year" column="year" type="Integer" levelType="TimeYears" uniqueMembers="true"/>)"
    R"(<Level name="Quarter" column="quarter" type="Integer" levelType="TimeQuarters"/>)"
    R"(<Level name="Month" column="month" type="Integer" levelType="TimeMonths"/>)";
constexpr const char* kOrderMend =
    R"(<Level name="Month" column="month" ordinalColumn="month_number" levelType="TimeMonths"/>)";
constexpr const char* kDateNameMend =
    R"(<Level name="Month" column="month" captionColumn="month_in_words" levelType="TimeMonths"/>)";
constexpr const char* kLinesMend = R"(<Dimension name="QeL" foreignKey="line_id">)";
constexpr const char* kLinesHierarchyMend =
    R"(<Hierarchy name="QeL" hasAll="false" primaryKey="line_id">)";
constexpr const char* kLedgersMend = R"(<Dimension name="ActX" foreignKey="file_id">)";
constexpr const char* kLedgersHierarchyMend =
    R"(<Hierarchy name="xlFile" hasAll="true" allMemberName="All" primaryKey="file_id">)";
constexpr const char* kOpeningMend =
    R"(<Hierarchy hasAll="true" allMemberName="All" primaryKey="key"><Table name="opening"/>)"
    R"(<Level name="Opening_Balance" column="key" type="Integer" uniqueMembers="true"/>)";
constexpr const char* kMeasureMend =
    R"(<Measure name="Amount" column="amount" aggregator="sum" formatString="#,##0.00"/>)";

class Check {
 public:
  Check(const Locale& locale, CubeConnection& connection, const std::string& catalog)
      : locale_(locale), connection_(connection), catalog_(catalog) {}

  std::vector<CubeLack> Run() {
    const auto structure = connection_.Structure();
    cube_ = FirstCube(*structure, catalog_);
    CheckName();
    CheckDates();
    CheckLines();
    CheckLedgers();
    if (HasOpeningBalances(*cube_)) CheckOpeningBalances();
    CheckMeasures();
    return std::move(lacks_);
  }

 private:
  void Lacks(std::string what, std::string mend) {
    lacks_.push_back({std::move(what), std::move(mend)});
  }

  void CheckName() {
    if (catalog_.ends_with("QEL")) return;
    Lacks("The name \"" + catalog_ +
              "\" does not end in QEL: the settings window offers only cubes whose names do",
          "<Cube name=\"" + catalog_ + "QEL\">");
  }

  void CheckDates() {
    const auto dimension = cube_->FindDimension("Date");
    if (!dimension) {
      return Lacks("The cube has no dimension \"Date\": a query finds its periods in it",
                   kDateMend);
    }
    const auto dates = dimension->HierarchyAt(0);
    CubeState state;
    try {
      ReadDateRange(locale_, *dates, state);
      ReadDateMembers(locale_, *dates, state);
      CheckDateNames(state.CubeDateMembers);
    } catch (const Failure& failure) {
      const bool disordered = failure.number() == failure_number::kInvalidCall;
      const bool has_all = dates->LevelCount() > 0 && dates->LevelAt(0)->IsAll();
      const char* levels = has_all ? kDateLevelsMend : kDateHierarchyMend;
      Lacks(failure.description(), disordered ? kOrderMend : levels);
    }
  }

  /// The names come from the cube as they are to be written: only an apostrophe can be in the way.
  void CheckDateNames(const std::vector<std::string>& members) {
    const auto odd = std::ranges::find_if(
        members, [](const std::string& member) { return member.find('\'') != std::string::npos; });
    if (odd != members.end()) CheckInFormula(*odd, *odd, kDateNameMend);
  }

  void CheckLines() {
    const auto dimension = cube_->FindDimension("QeL");
    if (!dimension) {
      return Lacks("The cube has no dimension \"QeL\": its members are the lines of the report",
                   kLinesMend);
    }
    if (!HasHierarchy(*dimension, "QeL")) {
      Lacks("The dimension \"QeL\" has no hierarchy \"QeL\": its members are the report's lines",
            kLinesHierarchyMend);
    }
  }

  void CheckLedgers() {
    const auto dimension = cube_->FindDimension("ActX");
    if (!dimension) {
      return Lacks(
          "The cube has no dimension \"ActX\": the ledger that a data source names (OBS) is in it",
          kLedgersMend);
    }
    if (!HasHierarchy(*dimension, "xlFile")) {
      return Lacks(
          "The dimension \"ActX\" has no hierarchy \"xlFile\": ledgers are looked for there",
          kLedgersHierarchyMend);
    }
    CheckMember("[ActX].[xlFile].[All]", "the ledgers stand below it", kLedgersHierarchyMend);
  }

  /// With at least two members there, queries ask for those with and without opening balances.
  void CheckOpeningBalances() {
    CheckMember("[Opening_Balance].[All].[0]", "it holds the opening balances", kOpeningMend);
    CheckMember("[Opening_Balance].[All].[1]", "it holds all other entries", kOpeningMend);
  }

  void CheckMeasures() {
    const auto names = MemberNames(*cube_->DimensionAt(0)->HierarchyAt(0));
    for (const std::string& name : names) {
      if (name.find_first_of("']") == std::string::npos) continue;
      CheckInFormula("[Measures].[" + name + "]", "the measure \"" + name + "\"", kMeasureMend);
    }
    const bool any = std::any_of(names.begin(), names.end(), IsMoneyMeasure);
    if (any) return;
    Lacks(
        "The cube has no measure without \"Quantity\" in its name: such measures fill money "
        "columns",
        kMeasureMend);
  }

  bool HasHierarchy(const CubeDimension& dimension, const std::string& name) const {
    for (std::size_t i = 0; i < dimension.HierarchyCount(); ++i) {
      if (IsCalled(*dimension.HierarchyAt(i), dimension.Name(), name)) return true;
    }
    return false;
  }

  /// Some servers put the dimension before the name of a hierarchy.
  bool IsCalled(const CubeHierarchy& hierarchy, const std::string& dimension,
                const std::string& name) const {
    const std::string called = hierarchy.Name();
    return EqualNoCase(locale_, called, name) ||
           EqualNoCase(locale_, called, dimension + "." + name);
  }

  /// Asks for it as a query would: providers differ in which names they understand.
  void CheckMember(const std::string& member, const std::string& why, const char* mend) {
    try {
      connection_.Execute("SELECT {" + member + "} ON COLUMNS FROM [" + cube_->Name() + "]");
    } catch (const Failure& failure) {
      Lacks("The cube has no member " + member + ": " + why + " (" + failure.description() + ")",
            mend);
    }
  }

  /// Asks for it as a query would, which escapes nothing.
  void CheckInFormula(const std::string& member, const std::string& called, const char* mend) {
    try {
      connection_.Execute("WITH MEMBER [Measures].[asked] AS 'Count({" + member +
                          "})' SELECT {[Measures].[asked]} ON COLUMNS FROM [" + cube_->Name() +
                          "]");
    } catch (const Failure& failure) {
      Lacks("A query cannot name " + called + ": rename it, without ' and ] (" +
                failure.description() + ")",
            mend);
    }
  }

  const Locale& locale_;
  CubeConnection& connection_;
  const std::string& catalog_;
  std::unique_ptr<CubeDef> cube_;
  std::vector<CubeLack> lacks_;
};

}  // namespace

std::vector<CubeLack> FindLacks(const Locale& locale, CubeConnection& connection,
                                const std::string& catalog) {
  return Check(locale, connection, catalog).Run();
}

bool CubeMayLackSomething(int32_t failure) {
  return failure == failure_number::kInvalidDate || failure == failure_number::kItemNotFound ||
         failure == failure_number::kSyntax;
}

}  // namespace vok
