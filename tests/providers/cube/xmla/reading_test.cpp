// Answers, cut into pieces of any size, as they are read.
#include <gmock/gmock.h>

#include <ctime>
#include <fstream>
#include <iterator>
#include <map>

#include "providers/cube/xmla/answer.h"
#include "providers/cube/xmla/cellset_reader.h"
#include "providers/cube/xmla/rowset_reader.h"
#include "providers/cube/xmla/server.h"
#include "providers/server/login.h"
#include "providers/server/server_settings.h"
#include "test_system.h"
#include "tests/providers/cube/xmla/answers.h"
#include "tests/support/answers/answer.h"
#include "tests/support/failures.h"

namespace vok::xmla {
namespace {

using testing::HasSubstr;

void Read(const std::string& xml, ResultReader& reader, std::size_t piece) {
  const HttpHead head{200, "text/xml", ""};
  Answer answer("http://h/xmla", failure_number::kSyntax, reader);
  for (std::size_t i = 0; i < xml.size(); i += piece) answer.Take(head, xml.substr(i, piece));
  answer.Finish(head);
}

std::unique_ptr<CellsetData> ReadCellset(const std::string& xml, std::size_t piece = 1 << 20) {
  auto data = std::make_unique<CellsetData>();
  CellsetReader reader(*data);
  Read(xml, reader, piece);
  return data;
}

std::string Told(const std::string& xml) {
  return vok::test::DescriptionOf([&] { ReadCellset(xml); });
}

std::string FileText(const std::string& name) {
  std::ifstream file(VOK_XMLA_ANSWERS + ('/' + name), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

/// Cells of every form, a place that is empty, and two cells out of order.
TEST(Answers, OfCellsetsReadTheSameInPiecesOfAnySize) {
  for (const std::size_t piece : {1, 2, 3, 7, 64, 100000}) {
    auto data = ReadCellset(FileText("cells.xml"), piece);
    std::vector<double> column(2);
    std::vector<CellState> states(2);
    data->ReadCells(23, 1, column, states);
    EXPECT_EQ(column, (std::vector<double>{20436089.25, -7}));
    EXPECT_EQ(states, (std::vector<CellState>{CellState::kNumber, CellState::kInteger}));
    EXPECT_EQ(data->CellText(17) + "|" + data->CellText(19) + "|" + data->CellText(20),
              "1,5|No member|Overflow");
    EXPECT_THROW(data->Cell(28), Failure);
    EXPECT_THROW(data->Member(1, 14, 0), Failure);
    EXPECT_THROW(data->Member(1, 0, 1), Failure);
    EXPECT_EQ(vok::test::Shown({"", std::move(data)}, true), FileText("cells.answers")) << piece;
  }
}

TEST(Answers, ThatCannotBeTrustedAreFailures) {
  const std::string good = test::TwoByTwo("");
  const auto cell = [](const char* ordinal) {
    return std::string("<Cell CellOrdinal=\"") + ordinal + "\"><Value>1</Value></Cell>";
  };
  std::string many = "<Axes>";
  for (int axis = 0; axis < 2; ++axis) {
    many += "<Axis name=\"Axis" + std::to_string(axis) + "\"><Tuples>";
    for (int i = 0; i < 50000; ++i) many += "<Tuple><Member/></Tuple>";
    many += "</Tuples></Axis>";
  }
  std::string nested;
  for (int i = 0; i < 70; ++i) nested += "<a>";
  const struct {
    std::string xml;
    const char* says;
  } kCases[] = {
      {good.substr(0, good.size() - 60), "ended its answer too early, in the middle of the XML"},
      {good + "<more/>", "junk after document element"},
      {"<html><body>Log in</body></html>", "an HTML page (Content-Type text/xml) instead of XML"},
      {"<!DOCTYPE x [<!ENTITY a \"b\">]><x>&a;</x>", "it has a DOCTYPE in line 1"},
      {"<x/>", "its outermost element is \"x\", not a SOAP envelope"},
      {test::Envelope(""), "neither a result nor a failure"},
      {test::Result(""), "it has no axes"},
      {test::Result("<row><A>1</A></row>"), "a rowset, not a cellset"},
      {test::Result("<CellData/>"), "its cells come before its axes"},
      {test::Result(many + "</Axes>"), "it has more than 50000000 cells"},
      {test::Result("<Axes><x><Tuples><Tuple><Member/></Tuple></Tuples></x></Axes>"), "no failure"},
      {test::Result("<Axes><Axis name=\"Axis1\"/></Axes>"), "its axes are out of order"},
      {test::Result("<Axes><Axis name=\"Axis0\"><Members/></Axis></Axes>"), "than tuples"},
      {test::Result("<Axes><Axis name=\"Axis0\"><Tuples><Tuple><Member/></Tuple><Tuple/></Tuples>"
                    "</Axis></Axes>"),
       "tuples of different lengths"},
      {test::TwoByTwo(cell("4")), "it has a cell 4, though its axes make 4"},
      {test::TwoByTwo(cell("-1")), "one of its cells has no ordinal"},
      {test::TwoByTwo(cell("1") + cell("1")), "the cell 1 twice"},
      {test::TwoByTwo(cell("0") + cell("1") + cell("2") + cell("3") + cell("3")),
       "one of its cells twice"},
      {test::TwoByTwo("</CellData><CellData>"), "it has cells twice"},
      {test::TwoByTwo("<Cell CellOrdinal=\"0\"><Value>" + std::string(kLongestText + 1, 'x') +
                      "</Value></Cell>"),
       "one of its texts is huge"},
      {test::Result(nested), "nested too deeply"},
      {test::Fault("Parse failed", "no &#39;[x]&#39; in cube"),
       "The cube server http://h/xmla reports: Parse failed: no '[x]' in cube"},
      {test::Envelope("<Fault><Reason><Text>Told twice</Text></Reason><Detail>Told twice</Detail>"
                      "</Fault>"),
       "reports: Told twice"},
      {test::Envelope("<Fault/>"), "reports: an error without a description"},
      {test::TwoByTwo(cell("0"),
                      "<Exception/><Messages><Warning Description=\"slow\"/>"
                      "<Error ErrorCode=\"3\" Description=\"Out of memory\"/></Messages>"),
       "reports: Out of memory"},
      {test::TwoByTwo(cell("0"), "<Exception/>"), "reports: an error without a description"},
      {test::TwoByTwo(cell("0"), "<Messages><Warning Description=\"slow\"/></Messages>"),
       "no failure"},
  };
  for (const auto& [xml, says] : kCases) EXPECT_THAT(Told(xml), HasSubstr(says));
}

TEST(Answers, WithoutEndAreRefusedSoon) {
  std::string names;
  for (int i = 0; i < 300'000; ++i) names += "<n" + std::to_string(i) + "/>";
  const std::string attribute = "<row name=\"" + std::string(300'000, 'x') + "\"/>";
  const struct {
    std::string content;
    std::size_t piece;
    const char* says;
  } kCases[] = {
      {attribute, 1, "a rowset, not a cellset"},  // read in time that grows as its length
      {"<row name=\"" + std::string(16'000'000, 'x') + "\"/>", 1 << 14,
       "its tags or comments is huge"},
      {"<row name=\"" + std::string(xml::kLongestToken, 'x') + "\"/>", 1 << 30, "is huge"},
      {"<!--" + std::string(16'000'000, 'x') + "-->", 1 << 14, "its tags or comments is huge"},
      {"<" + std::string(100'000, 'n') + "/>", 1 << 14, "it has no axes"},
      {names, 1 << 14, "it has too many different names"},
  };
  const std::clock_t start = std::clock();
  for (const auto& [content, piece, says] : kCases) {
    const auto read = [&, &xml = content, size = piece] { ReadCellset(test::Result(xml), size); };
    EXPECT_THAT(vok::test::DescriptionOf(read), HasSubstr(says));
  }
  EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 30) << "seconds of this process's time";

  RowsetReader reader({"NAME"}, 1, [](const Row&) {});
  const auto read_rows = [&] { Read(test::Result("<row/><row/>"), reader, 5); };
  EXPECT_THAT(vok::test::DescriptionOf(read_rows), HasSubstr("it has more than 1 rows"));

  CellsetData data;
  data.AddAxis();
  const auto add_tuples = [&] {
    for (std::size_t i = 0; i <= kMaxTuples; ++i) data.EndTuple();
  };
  EXPECT_THAT(vok::test::DescriptionOf(add_tuples), HasSubstr("more than 5000000 tuples"));
}

ServerSettings FromIni(std::map<std::string, std::string> ini) {
  return server::ReadServerSettings(
      kCubeServers, [&](const std::string& key) { return ini[key]; },
      [](const std::string& path, std::size_t) {
        if (path == "missing") throw Failure(53, "Cannot read missing.");
        return path == "empty" ? "\n" : "of " + path + "\r\nmore";
      });
}

TEST(Settings, GiveThePasswordOrTheFileThatHoldsIt) {
  const struct {
    const char* variable;
    const char* file_variable;
    std::map<std::string, std::string> ini;
    const char* password;
  } kCases[] = {
      {nullptr, nullptr, {{"PasswordFile", "ini"}}, "of ini"},
      {nullptr, nullptr, {{"Password", "ini"}, {"PasswordFile", "missing"}}, "ini"},
      {nullptr, "run", {{"Password", "ini"}, {"PasswordFile", "ini"}}, "of run"},
      {"own", "missing", {{"PasswordFile", "missing"}}, "own"},
  };
  for (const auto& c : kCases) {
    if (c.variable != nullptr) test::SetVariable("VOKCUBE_XMLA_PASSWORD", c.variable);
    if (c.file_variable != nullptr)
      test::SetVariable("VOKCUBE_XMLA_PASSWORD_FILE", c.file_variable);
    EXPECT_EQ(FromIni(c.ini).password, c.password);
    test::RemoveVariable("VOKCUBE_XMLA_PASSWORD");
    test::RemoveVariable("VOKCUBE_XMLA_PASSWORD_FILE");
  }
  for (const char* bad : {"missing", "empty"}) {
    EXPECT_THAT(vok::test::DescriptionOf([&] {
                  FromIni({{"PasswordFile", bad}});
                }),
                AllOf(HasSubstr("PasswordFile"), HasSubstr(bad), Not(HasSubstr(".."))));
  }
}

TEST(Settings, ComeFromTheEnvironmentFirst) {
  test::SetVariable("VOKCUBE_XMLA_CA_FILE", "/ca.pem");
  const ServerSettings settings = FromIni({{"CaFile", "/other.pem"},
                                           {"Authentication", "NTLM"},
                                           {"TotalSeconds", "90"},
                                           {"Server", "olap.example:8443"},
                                           {"AnswerMegabytes", "0"},
                                           {"Password", "se;cret"}});
  test::RemoveVariable("VOKCUBE_XMLA_CA_FILE");
  EXPECT_EQ(settings.ca_file, "/ca.pem");
  EXPECT_EQ(settings.authentication, "ntlm");
  EXPECT_EQ(settings.password, "se;cret");
  EXPECT_EQ(settings.total_seconds, 90);
  EXPECT_EQ(settings.server, "olap.example:8443");
  EXPECT_EQ(settings.answer_megabytes, 0);
  EXPECT_EQ(settings.connect_seconds, 30);
  for (const char* bad : {"-1", "5s", "604801", "99999999999", " 5"}) {
    EXPECT_THROW(FromIni({{"IdleSeconds", bad}}), Failure) << bad;
  }
  EXPECT_THROW(FromIni({{"Authentication", "kerberos"}}), Failure);
  EXPECT_THROW(FromIni({{"Server", "https://olap.example/xmla"}}), Failure);
}

TEST(Logins, AreForTheHostThatServerNames) {
  const struct {
    const char* server;
    const char* address;
    const char* why;  // not; "" for a login that is sent
    const char* authentication = "";
  } kCases[] = {
      {"olap.example", "https://OLAP.example/xmla?x", ""},
      {"olap.example:443", "https://olap.example/", ""},
      {"olap.example:8443", "https://olap.example:8443", ""},
      {"[::1]", "https://[::1]:8443/", ""},
      {"", "https://olap.example/", "as Server in Qel.ini"},
      {"", "https://olap.example/", "as Server in Qel.ini", "basic"},
      {"olap.example", "https://olap.example.evil/", "names another host"},
      {"olap.example", "https://evil/olap.example", "names another host"},
      {"olap.example", "https://olap.example\\.evil/", "names another host"},
      {"olap.example", "https://olap.example%00.evil/", "names another host"},
      {"olap.example", "https:///evil/", "names another host"},
      {"olap.example:443", "https://olap.example:8443/", "names another host"},
      {"olap.example", "HTTP://olap.example/", "over http they can be read"},
      {"olap.example", "http://olap.example/", "over http they can be read", "digest"},
      {"olap.example", "http://olap.example/", "", "basic"},
      {"evil.example", "http://olap.example/", "names another host", "basic"},
      {"db.example:5432", "postgresql://DB.example/ledger", ""},
      {"db.example:5433", "postgresql://db.example/ledger", "names another host"},
  };
  ServerSettings settings;
  EXPECT_EQ(server::WhyNoLogin(settings, "http://anywhere/"), "") << "there is none";
  settings.user = "me";
  for (const auto& [server, address, why, authentication] : kCases) {
    settings.server = server;
    settings.authentication = authentication;
    const std::string said = server::WhyNoLogin(settings, address);
    EXPECT_THAT(said, HasSubstr(why)) << address;
    EXPECT_EQ(said.empty(), *why == '\0') << address;
  }
  const std::pair<const char*, const char*> words[] = {
      {"Unsupported proxy syntax in 'me:a b@c@h:x'", "Unsupported proxy syntax in '…@h:x'"},
      {"no host http://me:a@h here", "no host …@h here"},
      {"it's secret or so", "it's … or so"}};
  settings.password = "secret";
  for (const auto& [said, shown] : words) EXPECT_EQ(server::WithoutSecrets(said, settings), shown);
  ServerSettings own;  // the system's login
  own.authentication = "negotiate";
  EXPECT_THAT(server::WhyNoLogin(own, "https://olap.example/"), HasSubstr("as Server in Qel.ini"));
}

}  // namespace
}  // namespace vok::xmla
