#include "providers/recordset/persisted_recordset.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "providers/recordset/rowset.h"
#include "tests/support/failures.h"
#include "tests/support/memory_host.h"

namespace vok::recordset {
namespace {

using vok::test::NumberOf;

struct LanguageFile {
  vok::test::MemoryHost memory;
  std::unique_ptr<Recordset> set;

  LanguageFile() {
    memory.files.files["Lang.rs"] = WriteXmlRowset(
        {{{"sId", FieldType::kInteger}, {"lId", FieldType::kText}, {"text", FieldType::kText}},
         {{1000, "1", "Yes"}, {1000, "2", "Да"}, {1001, "2", "НЕТ"}, {Null{}, Null{}, "it's"}}});
    set = OpenPersisted(memory.files, memory.locale, "Lang.rs");
  }
  std::string Rest() {
    std::string texts;
    for (; !set->AtEnd(); set->MoveNext()) texts += set->Field(2).ToText() + " ";
    return texts;
  }
};

TEST(PersistedRecordset, FiltersAndFinds) {
  const struct {
    const char* filter;
    const char* find;
    const char* expected;  ///< the texts from the row that was found on
  } cases[] = {
      {"", "sId=1001", "НЕТ it's "},
      {"lId = 2", "sId=1000", "Да НЕТ "},
      {"[LID]='2'", "SID = 1001.0", "НЕТ "},
      {"lId = 1", "sId=1001", ""},
      {"", "text = 'нет'", "НЕТ it's "},
      {"", "text='it''s'", "it's "},
      {"", "sId='1000'", ""},
      {"", "sId=0", ""},
  };
  for (const auto& [filter, find, expected] : cases) {
    LanguageFile file;
    file.set->SetFilter(filter);
    file.set->MoveFirst();
    file.set->Find(find);
    EXPECT_EQ(file.Rest(), expected) << filter << ", " << find;
  }
  LanguageFile file;
  EXPECT_EQ(file.set->Count(), 4);
  file.set->Find("sId=1001");
  file.set->Find("sId=1000");  // it looks forward alone
  EXPECT_TRUE(file.set->AtEnd());
  file.set->SetFilter("lId = 3");
  EXPECT_EQ(file.set->Count(), 0);
  EXPECT_TRUE(file.set->AtEnd());
  file.set->SetFilter("");
  EXPECT_EQ(file.Rest(), "Yes Да НЕТ it's ");
  EXPECT_EQ(file.set->FieldName(1), "lId");
}

TEST(PersistedRecordset, FailsAsThePlatformDoes) {
  namespace n = failure_number;
  const struct {
    std::function<void(Recordset&)> call;
    int32_t number;
  } cases[] = {
      {[](Recordset& set) { set.SetFilter("lId > 2"); }, n::kWrongArguments},
      {[](Recordset& set) { set.SetFilter("lId = "); }, n::kWrongArguments},
      {[](Recordset& set) { set.SetFilter("= 2"); }, n::kWrongArguments},
      {[](Recordset& set) { set.SetFilter("lId = 2 and sId = 3"); }, n::kWrongArguments},
      {[](Recordset& set) { set.SetFilter("lId"); }, n::kWrongArguments},
      {[](Recordset& set) { set.Find("text = 'a'b'"); }, n::kWrongArguments},
      {[](Recordset& set) { set.Find("other = 1"); }, n::kItemNotFound},
      {[](Recordset& set) { set.Field("other"); }, n::kItemNotFound},
      {[](Recordset& set) { set.Field(3); }, n::kItemNotFound},
      {[](Recordset& set) { set.Field(-1); }, n::kItemNotFound},
      {[](Recordset& set) { set.SetFilter("lId = 3"), set.MoveFirst(); }, n::kNoCurrentRecord},
      {[](Recordset& set) { set.SetFilter("lId = 3"), set.Field(0); }, n::kNoCurrentRecord},
      {[](Recordset& set) { set.Find("sId=5"), set.MoveNext(); }, n::kNoCurrentRecord},
  };
  for (std::size_t index = 0; index < std::size(cases); ++index) {
    LanguageFile file;
    EXPECT_EQ(NumberOf([&] { cases[index].call(*file.set); }), cases[index].number) << index;
  }
}

}  // namespace
}  // namespace vok::recordset
