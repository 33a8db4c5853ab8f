#include "cli/settings_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/failures.h"

namespace vok::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(SettingsDocument, KeepsEverySettingThroughExportAndImport) {
  const std::string text = R"({"dataSources": [{"SetName": " מכירות?", "VarnelMDB": "host.mdb",
      "CubeFile": "C:\\a b\\x.cub", "CubeName": "QEL", "OBS": "Ledger \"1\"", "ActFile": "a",
      "CountMoney": -2, "MoneySets": [{"MoneySet": "NIS", "Measure": "Amount", "Qty": "Units"},
      {"MoneySet": null, "Measure": "Сумма", "IsCalculated": true}]}],
    "periods": [{"SetName": "2024", "Periods": [{"PeriodName": "Feb", "FromDate": "2024-02-01",
      "UntillDate": "2024-02-29", "includeOpenBalans": true}, {"FromDate": ""}]}]})";
  const SettingsDocument first = ParseSettingsDocument(text, "test");
  const SettingsDocument document = ParseSettingsDocument(PrintSettingsDocument(first), "again");

  ASSERT_EQ(document.data_sources.size(), 1u);
  const DataSourceSetting& source = document.data_sources[0];
  EXPECT_EQ(source.SetName, " מכירות?") << "as it may be stored";
  EXPECT_EQ(source.CubeFile, "C:\\a b\\x.cub");
  EXPECT_EQ(source.OBS, "Ledger \"1\"");
  EXPECT_EQ(source.CountMoney, -2);
  EXPECT_EQ(source.MoneySets[0].MoneySet, Value("NIS"));
  EXPECT_EQ(source.MoneySets[0].Qty, "Units");
  EXPECT_TRUE(source.MoneySets[1].MoneySet.IsNull());
  EXPECT_TRUE(source.MoneySets[1].IsCalculated);
  EXPECT_TRUE(source.MoneySets[12].MoneySet.IsNull());
  ASSERT_EQ(document.periods.size(), 1u);
  const PeriodSet& periods = document.periods[0];
  EXPECT_EQ(periods.Period(1).FromDate, Date::FromCivil(2024, 2, 1));
  EXPECT_EQ(periods.Period(1).UntilDate, Date::FromCivil(2024, 2, 29));
  EXPECT_TRUE(periods.Period(1).IncludeOpenBalance);
  EXPECT_TRUE(periods.Period(2).FromDate.IsZero());
}

std::string Source(const std::string& members) {
  return R"({"dataSources": [{"SetName": "S", )" + members + "}]}";
}

std::string Period(const std::string& members) {
  return R"({"periods": [{"SetName": "P", "Periods": [{)" + members + "}]}]}";
}

std::string Repeated(const std::string& item, int count) {
  std::string list;
  for (int i = 0; i < count; ++i) list += (i > 0 ? ", " : "") + item;
  return "[" + list + "]";
}

TEST(SettingsDocument, SaysWhereAndWhyADocumentIsRefused) {
  const struct {
    std::string text;
    const char* place;
    const char* reason;
  } cases[] = {
      {"", "doc", "not a settings document"},
      {Source(R"("CountMoney": 1e400)"), "doc", "1e400"},
      {"[]", "the document", "must be an object"},
      {R"({"datasources": []})", "the document", "unknown entry \"datasources\""},
      {R"({"periods": {}})", "periods", "must be an array"},
      {R"({"periods": [{}]})", "periods[0]", "SetName"},
      {R"({"periods": [{"SetName": null}]})", "periods[0]", "SetName"},
      {R"({"periods": [{"SetName": "A", "SetName": "B"}]})", "SetName", "is there twice"},
      {Source(R"("OBS": 5)"), "dataSources[0].OBS", "must be a text"},
      {Source(R"("CountMoney": 2.5)"), "dataSources[0].CountMoney", "whole number"},
      {Source(R"("CountMoney": 40000)"), "dataSources[0].CountMoney", "whole number"},
      {Source(R"("CountMoney": 18446744073709551615)"), "dataSources[0].CountMoney",
       "whole number"},
      {Source(R"("MoneySets": [{"IsCalculated": 1}])"), "dataSources[0].MoneySets[0].IsCalculated",
       "true or false"},
      {Source(R"("MoneySets": )" + Repeated("{}", 14)), "dataSources[0].MoneySets", "at most 13"},
      {Source(R"("CubeFile": ")" + std::string(256, 'x') + "\""), "dataSources[0].CubeFile",
       "longer than 255"},
      {Source(R"("OBS": "a\u0000b")"), "dataSources[0].OBS", "NUL character"},
      {R"({"periods": [{"SetName": "P", "Periods": )" + Repeated("{}", 13) + "}]}",
       "periods[0].Periods", "at most 12"},
      {Period(R"("FromDate": "2024-02-30")"), "periods[0].Periods[0].FromDate", "not a date"},
      {Period(R"("FromDate": "1/2/2024")"), "periods[0].Periods[0].FromDate", "not a date"},
      {Period(R"("UntilDate": "2024-02-01")"), "periods[0].Periods[0]", "UntillDate"},
  };
  for (const auto& c : cases) {
    EXPECT_THAT(vok::test::DescriptionOf([&] { ParseSettingsDocument(c.text, "doc"); }),
                AllOf(HasSubstr("doc"), HasSubstr(c.place), HasSubstr(c.reason)))
        << c.text;
  }
  const auto longest = Source("\"CubeFile\": \"" + std::string(255, 'x') + "\"");
  EXPECT_EQ(ParseSettingsDocument(longest, "doc").data_sources[0].CubeFile.size(), 255u);
}

}  // namespace
}  // namespace vok::cli
