#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/providers/recordset/rowset_tools.h"

namespace vok::recordset::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr std::string_view kSpaces =
    " xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882'"
    " xmlns:dt='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882'"
    " xmlns:rs='urn:schemas-microsoft-com:rowset' xmlns:z='#RowsetSchema'";

constexpr std::string_view kColumns =
    "<s:AttributeType name='sId' rs:number='1'><s:datatype dt:type='int' dt:maxLength='4'/>"
    "</s:AttributeType>"
    "<s:AttributeType name='c1' rs:name='the text' rs:number='2' rs:nullable='true'>"
    "<s:datatype dt:type='string' dt:maxLength='255'/></s:AttributeType>"
    "<s:extends type='rs:rowbase'/>";

std::string Document(std::string_view columns, std::string_view data) {
  return "<xml" + std::string(kSpaces) +
         "><s:Schema id='RowsetSchema'><s:ElementType name='row' content='eltOnly'>" +
         std::string(columns) + "</s:ElementType></s:Schema>" + std::string(data) + "</xml>";
}

std::string Rows(std::string_view rows) {
  return Document(kColumns, "<rs:data>" + std::string(rows) + "</rs:data>");
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string Typed(std::string_view type, std::string_view value) {
  return Document("<s:AttributeType name='v' dt:type='" + std::string(type) + "'/>",
                  "<rs:data><z:row v='" + std::string(value) + "'/></rs:data>");
}

TEST(XmlRowset, ReadsWhatWritersLeave) {
  const std::string plain = Rows("<z:row sId='1205' c1='&#1509;&lt;&amp;'/><z:row sId='2'/>");
  const std::string expected = "sId,the text;1205,ץ<&;2,-";
  const struct {
    std::string xml;
    std::string expected;
  } cases[] = {
      {plain, expected},
      {"\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?>\r\n" + plain, expected},
      // With columns that are described beside the row and referred to.
      {Recorded("other_prefixes.xml"), "n;-7"},
      {Recorded("types.xml"),
       "yes,no,fixed,long,double,moment,day,time,bytes;"
       "yes,no,-1.5,4294967296,1e+09,#45351.5,#1,#0.75,!"},
      {Recorded("big_end.xml"), "sId,the text;1,x"},
      {Rows(""), "sId,the text"},
      {Rows("<z:row/>"), "sId,the text;-,-"},
      // Columns by number; those without one follow.
      {Document("<s:AttributeType name='last'/><s:AttributeType name='b' rs:number='2'/>"
                "<s:AttributeType name='a' rs:number='1'/>",
                "<rs:data><z:row b='2' last='3' a='1'/></rs:data>"),
       "a,b,last;1,2,3"},
      // Changes that wait to be sent: of a text, to NULL, from NULL, of several fields at once.
      {Rows("<z:row sId='1'/><rs:insert><z:row sId='2'/><z:row sId='3' c1='c'/></rs:insert>"
            "<rs:delete><z:row sId='4'/></rs:delete>"
            "<rs:update><rs:original><z:row sId='5' c1='was'/><z:row sId='6' c1='six'/>"
            "<z:row sId='7'/><z:row sId='8' c1='e'/></rs:original><z:row c1='is'/>"
            "<z:row rs:forcenull='c1'/><z:row c1='g'/><z:row sId='9' rs:forcenull='c1'/>"
            "</rs:update>"),
       "sId,the text;1,-;2,-;3,c;5,is;6,-;7,g;9,-"},
      // Record sets within rows are passed over, to any depth.
      {Recorded("children.xml"), "a;1;2"},
  };
  for (const auto& [xml, wanted] : cases) {
    EXPECT_EQ(Outcome(xml), wanted) << xml;
  }
}

TEST(XmlRowset, RefusesWhatItDoesNotUnderstandAndSaysWhy) {
  std::string nested;
  for (int level = 0; level < 20; ++level) nested += "<a>";
  const struct {
    std::string xml;
    const char* why;
  } cases[] = {
      {"", "neither as the binary nor as the XML form"},
      {"sId,lId", "neither"},
      {"\xFF\xFE", "not well-formed XML"},
      {"<xml", "not well-formed XML: unclosed token in line 1"},
      {"<!DOCTYPE x [<!ENTITY a 'b'>]><x/>", "DOCTYPE"},
      {"<?xml version='1.0' encoding='windows-1255'?><x/>", "unknown encoding"},
      {nested, "nested too deeply"},
      {"<xml/>", "no rows element"},
      {Document(kColumns, ""), "no rows element"},
      {Document("", "<rs:data/>"), "describes no columns"},
      {Document("<s:AttributeType rs:number='1'/>", "<rs:data/>"), "has no name"},
      {Document("<s:AttributeType name='a' rs:number='x'/>", "<rs:data/>"), "wrong number"},
      {Document("<s:AttributeType name='a'/><s:AttributeType name='a'/>", "<rs:data/>"), "twice"},
      {Document("<s:attribute type='a'/>", "<rs:data/>"), "does not describe the column \"a\""},
      {Document("</s:ElementType><s:ElementType name='other'>", "<rs:data/>"), "two kinds of rows"},
      {Replaced(Rows(""), " name='row'", ""), "names no row"},
      {Replaced(Rows("<z:row/>"), "#RowsetSchema", "#Other"), "\"row\" stands among its rows"},
      {"<xml" + std::string(kSpaces) + "><rs:data/></xml>", "before their schema"},
      {Document(kColumns, "<rs:data/><rs:data/>"), "two sets of rows"},
      {Rows("<z:row sId='1'/><z:row sId='x'/>"), "row 2 has a wrong value of \"sId\""},
      {Rows("<z:row sId='2147483648'/>"), "row 1 has a wrong value of \"sId\""},
      {Rows("<z:row lId='1'/>"), "\"lId\", which its schema does not describe"},
      {Rows("<z:row rs:forcenull='c2'/>"), "\"c2\", which its schema does not describe"},
      {Rows("<z:row><z:row/></z:row>"), "\"row\" stands among its rows"},
      {Rows("<rs:insert><rs:insert/></rs:insert>"), "\"insert\" stands among its rows"},
      {Rows("<rs:update><z:row/></rs:update>"), "an update is of no row"},
      {Rows("<rs:update><rs:original><z:row/></rs:original></rs:update>"),
       "an update has more rows"},
      {Typed("dateTime", "2023-02-29"), "wrong value"},
      {Typed("dateTime", "2024-02-29T24:00:00"), "wrong value"},
      {Typed("boolean", "perhaps"), "wrong value"},
      {Typed("r8", "1e999"), "wrong value"},
  };
  for (const auto& [xml, why] : cases) {
    EXPECT_THAT(Outcome(xml),
                AllOf(StartsWith("!The record set \"Lang.rs\" cannot be opened: "), HasSubstr(why)))
        << xml;
  }
}

TEST(XmlRowset, HoldsTheLimits) {
  std::string columns;
  for (std::size_t column = 0; column < kMostColumns; ++column) {
    columns += "<s:AttributeType name='c" + std::to_string(column) + "'/>";
  }
  std::string rows = "<rs:data>";
  for (std::size_t row = 0; row < kMostValues / kMostColumns; ++row) rows += "<z:row/>";
  EXPECT_NO_THROW(CheckSize(kMostValues / kMostColumns, kMostColumns, "Lang.rs"));
  EXPECT_THAT(Outcome(Document(columns, rows + "<z:row/></rs:data>")), HasSubstr("4,000,000"));
  EXPECT_THAT(Outcome(Document(columns + "<s:AttributeType name='more'/>", "<rs:data/>")),
              HasSubstr("more than 1,000 columns"));
  EXPECT_THAT(Outcome(std::string(kLargestFile + 1, '<')), HasSubstr("larger than 64 MB"));
}

TEST(XmlRowset, WritesWhatItReads) {
  const Rowset rowset = {{{"sId", FieldType::kInteger},
                          {"sId", FieldType::kNumber},
                          {"כותרת's <x>", FieldType::kText},
                          {"1", FieldType::kBoolean},
                          {"", FieldType::kDate}},
                         {{1205, 0.1, " a\t\r\n'\"<&>\xF0\x9F\x98\x80 ", true, Date{45351.75}},
                          {-5, 1e300, "", false, Date{-657434}},
                          {Null{}, Null{}, Null{}, Null{}, Null{}}}};
  const std::string xml = WriteXmlRowset(rowset);
  EXPECT_EQ(Read(xml), rowset);
  EXPECT_EQ(WriteXmlRowset(Read(xml)), xml);

  for (const char* text : {"\x01", "\x7F\xFF", "\xC3", "\xE2\x82", "\xED\xA0\x80", "\xC0\x80",
                           "\xEF\xBF\xBF", "\xF5\x80\x80\x80"}) {
    EXPECT_THROW(WriteXmlRowset({{{"a", FieldType::kText}}, {{text}}}), Failure) << text;
  }
}

}  // namespace
}  // namespace vok::recordset::test
