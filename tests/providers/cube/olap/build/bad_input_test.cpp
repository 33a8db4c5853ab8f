// What a schema or a table must not say, and the words that tell the user so.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/cubes/sample_cube.h"
#include "tests/support/failures.h"

namespace vok::olap {
namespace {

struct Change {
  std::string from;  // the first place where it stands; "" appends
  std::string to;
  std::vector<const char*> words;
};

void Replace(std::string& text, const std::string& from, const std::string& to) {
  const auto place = from.empty() ? text.size() : text.find(from);
  ASSERT_NE(place, std::string::npos) << from;
  text.replace(place, from.size(), to);
}

/// `table`: "" for the schema.
std::string RefusalOf(const std::string& table, const Change& change) {
  test::CubeTexts texts = test::SampleLedger();
  Replace(table.empty() ? texts.schema : texts.tables.at(table), change.from, change.to);
  const test::TemporaryFolder folder;
  const std::string said = test::DescriptionOf([&] { test::BuildInto(folder, texts); });
  EXPECT_FALSE(std::filesystem::exists(folder.File("sample.cub"))) << change.to.substr(0, 500);
  return said;
}

void ExpectRefusals(const std::string& table, const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    const std::string refusal = RefusalOf(table, change);
    for (const char* word : change.words) {
      EXPECT_NE(refusal.find(word), std::string::npos)
          << change.to.substr(0, 500) << " gives: " << refusal << "\nwithout: " << word;
    }
  }
}

TEST(BadFormula, IsRefusedByMemberLineAndColumn) {
  const char* kEnd = "</Cube>";
  const std::string begin = R"(<CalculatedMember name="X" dimension="Measures")";
  std::string chain = begin + " formula='1'/>";
  for (int i = 0; i < 400; ++i) {
    const std::string before = i == 0 ? "X" : std::to_string(i - 1);
    chain += "<CalculatedMember name='" + std::to_string(i) +
             "' dimension='Measures' formula='[Measures].[" + before + "] + 1'/>";
  }
  std::vector<Change> changes = {
      {kEnd, chain, {"schema.xml, line 41: calculated member", "more than 1000 steps deep"}},
      {kEnd, begin + "/>", {"line 41", "\"X\"", "no <Formula>"}},
      {kEnd,
       begin + "><Formula>\n[Measures].[Amount] +\n [Measures].[Nope]</Formula></CalculatedMember>",
       {"schema.xml, line 41: calculated member [Measures].[X], line 3, column 2",
        "\"[Measures].[Nope]\" is not in cube \"QEL\""}},
      {kEnd,
       begin + " formula='Unheard([Measures].[Amount])'/>",
       {"[Measures].[X], line 1, column 1: not supported: Unheard"}},
      {kEnd,
       begin + " formula='1 2'/>",
       {"column 3: expected the end of the formula but found \"2\""}},
      {kEnd,
       begin + " formula='{[Date].[2009]}'/>",
       {"column 1: expected a value but found a set"}},
      {kEnd, begin + " formula='[Measures].[Amount'/>", {"line 1, column 12"}},
      {kEnd,
       begin + " formula='1'/>" + begin + " formula='2'/>",
       {"[Measures].[X] is declared twice"}},
      {kEnd,
       begin + " formula='[Measures].[X] + 1'/>",
       {"schema.xml, line 41: calculated member [Measures].[X]", "its formula needs itself"}},
      {kEnd,
       begin + " hierarchy='[Date]' formula='1'/>",
       {"one of the attributes dimension and hierarchy"}},
      {kEnd,
       "<CalculatedMember name='X' hierarchy='[Nope]' formula='1'/>",
       {"calculated member [Nope].[X]", "\"[Nope]\" is not in cube"}},
      {kEnd,
       begin + " formula='1'><CalculatedMemberProperty name='SOLVE_ORDER' value='x'/>"
               "</CalculatedMember>",
       {"SOLVE_ORDER", "\"x\", which is not a number"}},
      {kEnd,
       begin + " formula='1'><CalculatedMemberProperty name='FORMAT_STRING' "
               "expression='IIf(1=1,&quot;a&quot;,&quot;b&quot;)&quot;'/></CalculatedMember>",
       {"FORMAT_STRING", "not supported"}},
      {kEnd,
       begin + " formula='1'><CalculatedMemberProperty name='Colour' value='red'/>"
               "</CalculatedMember>",
       {"Colour", "not supported"}},
  };
  for (Change& change : changes) change.to += kEnd;
  ExpectRefusals("", changes);
}

TEST(BadSchema, IsRefusedByName) {
  std::string levels;
  for (int i = 0; i < 130; ++i) {
    levels += "<Level name='L" + std::to_string(i) + "' column='file'/>";
  }
  levels += "<Level name=\"File\"";
  ExpectRefusals(
      "", {
              {"<Level name=\"File\"",
               levels.c_str(),
               {"line 20", "\"xlFile\" has 133 levels; the limit is 128"}},
              {"</Schema>", "", {"schema.xml, line", "is not well-formed XML"}},
              {"<Schema name=\"Ledger\">", "<Schema name=\"\xff\">", {"UTF-8"}},
              {"<Table name=\"fact\"/>", "", {"line 3", "<Cube> \"QEL\"", "no <Table>"}},
              {"\"fact\"", "\"facts\"", {"\"facts.csv\"", "dim_act, dim_date", "fact"}},
              {"\"fact\"", "\"../fact\"", {"there is no file"}},
              {"column=\"amount\"", "column=\"sum\"", {"fact.csv", "\"sum\"", "amount, units"}},
              {"column=\"file\"", "column=\"files\"", {"dim_act.csv", "\"files\""}},
              {"foreignKey=\"ob\"", "", {"<Dimension> \"Opening_Balance\"", "no foreignKey"}},
              {" primaryKey=\"ob\"", "", {"no attribute primaryKey"}},
              {"name=\"Units\"", "name=\"AMOUNT\"", {"two of the name \"AMOUNT\""}},
              {"name=\"Quarter\"", "name=\"year\"", {"two of the name \"year\""}},
              {"name=\"MoneySet\"", "name=\"measures\"", {"holds the measures"}},
              {"defaultMeasure=\"Amount\"", "defaultMeasure=\"Sum\"", {"\"Sum\""}},
              {"\"count\"", "\"median\"", {"median", "not supported", "line 40"}},
              {"<Measure", "<CalculatedMember name=\"X\"/><Measure", {"<CalculatedMember>"}},
              {"<Table name=\"dim_ob\"/>", "<View alias=\"v\"/>", {"<View> is not supported"}},
              {"<Level name=\"File\"",
               "<Level hideMemberIf=\"IfBlankName\" name=\"File\"",
               {"hideMemberIf"}},
              {"<Level name=\"File\"", "<Level parentColumn=\"p\" name=\"File\"", {"parentColumn"}},
              {"column=\"file\"/>",
               "column=\"file\" uniqueMembers=\"true\"/>",
               {"dim_act.csv, line 5", "duplicate member", "\"File1\"", "\"Ledger2\"",
                "\"Ledger1\"", "uniqueMembers"}},
              {"column=\"ledger\"",
               "column=\"act_id\" nameColumn=\"ledger\"",
               {"\"dim_act\"", "two different keys", "\"Ledger1\""}},
              {"type=\"Integer\"", "type=\"Date\"", {"\"Date\"", "not supported"}},
              {"hasAll=\"true\"", "hasAll=\"yes\"", {"hasAll", "\"yes\""}},
          });
}

TEST(BadTable, HasNumbersThatAreNone) {
  for (const std::string text :
       {"-", "+", ".", "-.", "\"1,5\"", " 1", "1 ", "1e", "1e+", "1e+-2", "1e1.5", "--1", "1.2.3",
        "0x10", "nan", "inf", "1e99999999999", "½", "\"1\n,00\""}) {
    ExpectRefusals(
        "fact", {{"", "61,0,1,1,0,0," + text + ",2\n", {"line 62", "not a number", "\"amount\""}}});
  }
}

TEST(BadTable, IsRefusedWithItsLine) {
  std::string many;  // parts of them are read at once
  for (int i = 0; i < 120000; ++i) many += "61,0,1,1,0,0,1,2\n";
  ExpectRefusals("fact",
                 {
                     {"", "61,0,1,1,0,0,1.00\n", {"fact.csv, line 62", "7 fields", "has 8"}},
                     {"", "61,0,1,1,0,0,1.00,2,\n", {"fact.csv, line 62", "9 fields"}},
                     {"", "61,0,1,1,0,0,1e999,2\n", {"line 62", "1e999", "too large"}},
                     {"", "61,18,1,1,0,0,1,2\n", {"line 62", "\"18\"", "\"date_id\"", "\"Date\""}},
                     {"", "61,00,1,1,0,0,1,2\n", {"line 62", "\"00\""}},
                     {"", "61,,1,1,0,0,1,2\n", {"line 62", "\"\"", "\"date_id\""}},
                     {"", "\n61,0\n", {"line 63", "2 fields"}},
                     {"", many + "61,0\n", {"line 120062", "2 fields"}},
                     {"", "61,0\n" + many + "61\n", {"line 62", "2 fields"}},
                     {"", "6\"1,0\n" + many + "6\"1\n", {"line 62", "quote within"}},
                 });
  ExpectRefusals("dim_qel",
                 {
                     {"", "7,\xC3(,7\n", {"dim_qel.csv, line 8", "UTF-8"}},
                     {"", "7,\"open,7\n", {"line 8", "does not end"}},
                     {"", "7,\"a\"b,7\n", {"line 8", "after a quoted field"}},
                     {"", "7,a\"b,7\n", {"line 8", "quote within"}},
                     {"", "7,a\rb,7\n", {"line 8", "CR without LF"}},
                     {"", "6,Other,7\n", {"line 8", "duplicate key \"6\"", "line 7 has it"}},
                     {"", ",Other,7\n", {"line 8", "primary key", "empty"}},
                 });
  ExpectRefusals("dim_date",
                 {{"2009,1,1", "2009,first,1", {"line 2", "\"first\"", "\"Quarter\"", "integer"}}});
  ExpectRefusals("dim_ob", {
                               {"ob\n0\n1\n", "", {"dim_ob.csv", "empty"}},
                               {"0\n1\n", "", {"dim_ob", "no rows"}},
                               {"ob\n", "ob,ob\n", {"two columns \"ob\""}},
                           });
}

}  // namespace
}  // namespace vok::olap
