#include "cli/settings_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/failures.h"

namespace vok::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;

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
      {Source(R"("CountMoney": 1e400)"), "doc", "1e400"},
      {"[]", "the document", "must be an object"},
      {R"({"datasources": []})", "the document", "unknown entry \"datasources\""},
      {R"({"periods": {}})", "periods", "must be an array"},
      {R"({"periods": [{"SetName": null}]})", "periods[0]", "SetName"},
      {R"({"periods": [{"SetName": "A", "SetName": "B"}]})", "SetName", "is there twice"},
      {Source(R"("OBS": 5)"), "dataSources[0].OBS", "must be a text"},
      {Source(R"("CountMoney": 40000)"), "dataSources[0].CountMoney", "whole number"},
      {Source(R"("MoneySets": [{"IsCalculated": 1}])"), "dataSources[0].MoneySets[0].IsCalculated",
       "true or false"},
      {Source(R"("MoneySets": )" + Repeated("{}", 14)), "dataSources[0].MoneySets", "at most 13"},
      {Source(R"("CubeFile": ")" + std::string(256, 'x') + "\""), "dataSources[0].CubeFile",
       "longer than 255"},
      {Source(R"("OBS": "a\u0000b")"), "dataSources[0].OBS", "NUL character"},
      {R"({"periods": [{"SetName": "P", "Periods": )" + Repeated("{}", 13) + "}]}",
       "periods[0].Periods", "at most 12"},
      {Period(R"("FromDate": "2024-02-30")"), "periods[0].Periods[0].FromDate", "not a date"},
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
