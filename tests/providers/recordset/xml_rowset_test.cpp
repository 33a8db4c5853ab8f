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

std::string Utf16(std::string_view ascii, bool big_end_first) {
  std::string text = big_end_first ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii) {
    if (big_end_first) text += '\0';
    text += c;
    if (!big_end_first) text += '\0';
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
  // Other prefixes, and columns that are described beside the row and referred to.
  const std::string other_prefixes =
      "<a:daten xmlns:a='urn:other' xmlns='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882'"
      " xmlns:t='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882'>"
      "<Schema id='S'><AttributeType name='n' t:type='i2'/><description/>"
      "<ElementType name='zeile'><attribute type='n'/></ElementType></Schema><a:other/>"
      "<b:data xmlns:b='urn:schemas-microsoft-com:rowset' xmlns:c='#S'>"
      "<c:zeile n='-7' b:note='x'/></b:data></a:daten>";
  const std::string ascii = Rows("<z:row sId='1' c1='x'/>");
  const struct {
    std::string xml;
    std::string expected;
  } cases[] = {
      {plain, expected},
      {"\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?>\r\n" + plain, expected},
      {other_prefixes, "n;-7"},
      {Utf16(ascii, false), "sId,the text;1,x"},
      {Utf16(ascii, true), "sId,the text;1,x"},
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
      {Typed("boolean", "True"), "v;yes"},
      {Typed("boolean", "0"), "v;no"},
      {Typed("fixed.14.4", "-1.5"), "v;-1.5"},
      {Typed("i8", "4294967296"), "v;4294967296"},
      {Typed("dateTime", "2024-02-29T12:00:00.25"), "v;#45351.5"},
      {Typed("date", "1899-12-31"), "v;#1"},
      {Typed("time", "18:00:00"), "v;#0.75"},
      {Typed("bin.hex", "00ff"), "v;!"},
      // Record sets within rows are passed over, to any depth.
      {Document("<s:AttributeType name='a' dt:type='int'/><s:ElementType name='child'>"
                "<s:AttributeType name='b'><s:datatype dt:type='boolean'/></s:AttributeType>"
                "<s:ElementType name='grandchild'/></s:ElementType>",
                "<rs:data><z:row a='1'><child b='x'><grandchild/></child></z:row><z:row a='2'/>"
                "</rs:data>"),
       "a;1;2"},
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
