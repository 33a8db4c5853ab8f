#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "providers/database/sqlite/rows.h"
#include "tests/providers/database/sqlite/settings_file.h"

namespace vok {
namespace {

using namespace std::chrono_literals;
using namespace testing;
using test::DescriptionOf;
using test::NumberOf;
using DatabaseTest = test::SettingsFileTest;

TEST_F(DatabaseTest, TakesWhatFitsAndNoMore) {
  CreateFile();
  const auto connection = Connect();
  const auto table = connection->OpenTable("Sets");
  const auto text = [](std::size_t length) { return std::string(length, 'x'); };
  const struct {
    const char* field;
    Value value;
    int32_t number = 0;
  } rows[] = {
      {"SetName", text(255)},
      {"SetName", text(256), failure_number::kColumnOverflow},
      {"Caption", text(255)},
      {"Caption", text(256), failure_number::kColumnOverflow},
      {"Short", "😀"},
      {"Short", "a😀", failure_number::kColumnOverflow},
      {"Count", 2147483647.0},
      {"Count", 2147483648.0, failure_number::kOverflow},
      {"Count", -2147483648.0},
      {"Count", -2147483649.0, failure_number::kOverflow},
      {"Count", "many", failure_number::kTypeMismatch},
      {"From", Date::FromCivil(100, 1, 1)},
      {"From", Date{Date::FromCivil(100, 1, 1).serial - 1}, failure_number::kColumnOverflow},
      {"From", Date::FromCivil(9999, 12, 31)},
      {"From", Date::FromCivil(10000, 1, 1), failure_number::kColumnOverflow},
      {"From", Date{std::numeric_limits<double>::quiet_NaN()}, failure_number::kColumnOverflow},
      {"From", "31/2/2024", failure_number::kTypeMismatch},
      {"Flag", "maybe", failure_number::kTypeMismatch},
      {"Nothing", 1.0, failure_number::kItemNotFound},
  };
  Fields fitting;
  for (const auto& [field, value, number] : rows) {
    if (number == 0) fitting.emplace_back(field, value);
    // Without a key, what fits is refused for that alone.
    EXPECT_EQ(NumberOf([&, &name = field, &given = value] {
                table->Add({{name, given}, {"SetName", Null{}}});
              }),
              number == 0 ? failure_number::kIntegrity : number)
        << field;
  }
  table->Add(fitting);
  table->Add({{"SETNAME", "empty"}, {"Caption", ""}, {"From", Date{}}});
  const auto again = Connect()->Query("select * from SETS");  // outlives its connection
  EXPECT_EQ(again->Field("SetName").ToText().size(), 255U);
  EXPECT_EQ(again->Field("Short"), Value("😀"));
  EXPECT_EQ(again->Field("From"), Value(Date::FromCivil(9999, 12, 31)));
  again->MoveNext();
  const std::vector<Value> stored = {"empty", "", Null{}, Null{}, Date{}, false};
  for (int32_t field = 0; field < again->FieldCount(); ++field) {
    EXPECT_EQ(again->Field(field), stored.at(static_cast<std::size_t>(field))) << field;
  }
}

TEST_F(DatabaseTest, KeysAreUniqueWithoutRegardToCase) {
  CreateFile();
  const auto connection = Connect();
  for (const auto& [name, twin] : std::vector<std::pair<std::string, std::string>>{
           {"Sales", "SALES"}, {"Продажи", "ПРОДАЖИ"}, {"Σίσυφος", "ΣΊΣΥΦΟΣ"}, {"", ""}}) {
    Add(*connection, name);
    const auto twice = [&, name = twin] { Add(*connection, name); };
    EXPECT_EQ(NumberOf(twice), failure_number::kIntegrity) << twin;
  }
  EXPECT_EQ(NumberOf([&] { connection->OpenTable("Sets")->Add({}); }), failure_number::kIntegrity);
  EXPECT_EQ(Names(*connection, "Sets").size(), 4U);
}

TEST_F(DatabaseTest, FailuresCarryTheProvidersNumbers) {
  namespace number = failure_number;
  CreateFile();
  const auto connection = Connect();
  const std::vector<std::pair<std::string, int32_t>> statements = {
      {"select * from None", number::kNoTable},
      {"vok_columns", number::kNoTable},
      {"sqlite_schema", number::kNoTable},
      {"select None from Sets", number::kNoColumn},
      {"select * from Sets where None like 'a'", number::kNoColumn},
      {"select * from Sets where Count like '1'", number::kWrongColumnType},
      {"select * from Sets where SetName like '[a'", number::kSyntax},
  };
  for (const auto& [text, expected] : statements) {
    EXPECT_EQ(NumberOf([&, text = text] { connection->Query(text); }), expected) << text;
    EXPECT_EQ(NumberOf([&, text = text] { connection->Execute(text); }), expected) << text;
  }
  EXPECT_EQ(NumberOf([&] { connection->Query("delete * from Sets"); }), number::kSyntax);

  const auto records = connection->Query("Sets");
  EXPECT_EQ(NumberOf([&] { records->MoveNext(); }), number::kNoCurrentRecord);
  EXPECT_EQ(NumberOf([&] { records->Field(0); }), number::kNoCurrentRecord);
  EXPECT_EQ(NumberOf([&] { records->Field(6); }), number::kItemNotFound);
  EXPECT_EQ(NumberOf([&] { records->Field("None"); }), number::kItemNotFound);
  EXPECT_EQ(NumberOf([&] { connection->Commit(); }), number::kInvalidCall);
  const auto closed = Connect()->OpenTable("Sets");
  EXPECT_EQ(NumberOf([&] { closed->Add({{"SetName", "b"}}); }), number::kObjectClosed);
  const Transaction open(*connection, Purpose::kChange);
  EXPECT_EQ(NumberOf([&] { connection->Begin(Purpose::kSave); }), number::kInvalidCall);
}

TEST_F(DatabaseTest, StructureGrowsUnderItsRows) {
  CreateFile();
  const auto connection = Connect();
  Add(*connection, "old");
  const auto structure = connection->OpenStructure();
  structure->AppendColumn("sets", {"IsNew", ColumnType::kBoolean, 0, false});
  structure->AppendColumn("sets", {"Qty", ColumnType::kText, 0, false});
  EXPECT_EQ(structure->ColumnCount("Sets"), 8);
  const auto records = connection->Query("Sets");
  EXPECT_EQ(records->Field("IsNew"), Value(false));
  EXPECT_EQ(records->Field("Qty"), Value(""));

  namespace number = failure_number;
  EXPECT_EQ(NumberOf([&] { structure->ColumnCount("None"); }), number::kItemNotFound);
  EXPECT_EQ(NumberOf([&] { structure->AppendTable({"sets", {{"a"}}}); }), number::kObjectExists);
  EXPECT_EQ(NumberOf([&] { structure->AppendColumn("Sets", {"QTY"}); }), number::kObjectExists);
  EXPECT_EQ(NumberOf([&] { structure->AppendColumn("None", {"a"}); }), number::kItemNotFound);
  const IndexDefinition taken{"primarykey", "SetName"};
  EXPECT_EQ(NumberOf([&] { structure->AppendIndex("Sets", taken); }), number::kObjectExists);
}

TEST_F(DatabaseTest, ALockOfAnotherIsWaitedForAndThenNamed) {
  CreateFile();
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t holder = test::Start([&] {
    const auto connection = Connect();
    connection->Begin(Purpose::kSave);
    Add(*connection, "held");
    if (::write(ready[1], "x", 1) != 1) ::_exit(1);
    ::pause();
  });
  char byte;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  const auto connection = Connect(1);
  const auto start = std::chrono::steady_clock::now();
  const auto add = [&] { Add(*connection, "mine"); };
  EXPECT_THAT(DescriptionOf(add), AllOf(HasSubstr(path_), HasSubstr("1 seconds")));
  EXPECT_THAT(std::chrono::steady_clock::now() - start, AllOf(Ge(900ms), Le(5s)));
  EXPECT_THAT(Names(*connection, "Sets"), IsEmpty());
  const auto again = std::chrono::steady_clock::now();
  EXPECT_EQ(NumberOf([&] { Add(*Connect(20), "mine"); }), failure_number::kUnspecified);
  EXPECT_LT(std::chrono::steady_clock::now() - again, 800ms) << "it was waited for just before";
  ::kill(holder, SIGKILL);
  test::StatusOf(holder);
  EXPECT_EQ(NumberOf(add), 0);
  EXPECT_EQ(Names(*connection, "Sets"), std::vector<std::string>{"mine"});
}

}  // namespace
}  // namespace vok
