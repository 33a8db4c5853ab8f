// The two kinds of tables, and the forms that a CSV file may have.
#include <gtest/gtest.h>
#include <libdeflate.h>
#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <span>
#include <string>
#include <thread>
#include <utility>

#include "native.h"
#include "platform/failure.h"
#include "platform/utf8.h"
#include "providers/cube/olap/build/csv_form.h"
#include "providers/cube/olap/build/table_source.h"
#include "tests/support/cubes/sample_cube.h"
#include "tests/support/failures.h"

namespace vok::olap {
namespace {

constexpr const char* kSchema = R"(<Schema name="S"><Cube name="C"><Table name="fact"/>
<Dimension name="D" foreignKey="id"><Hierarchy hasAll="false" primaryKey="id"><Table name="d"/>
<Level name="L" column="name"/></Hierarchy></Dimension>
<Measure name="V" column="v" aggregator="sum"/></Cube></Schema>)";

void ExpectNamesAndSum(const CubeFile& file, const std::vector<std::string>& names, double sum) {
  const StoredCube& cube = file.cubes().at(0);
  std::vector<std::string> found;
  for (MemberId member = 0; member < cube.model.hierarchies[0].MemberCount(); ++member) {
    found.emplace_back(cube.model.hierarchies[0].Name(member));
  }
  EXPECT_EQ(found, names);
  EXPECT_EQ(cube.facts->Read({{0}, {}, {}})[0].numbers[0], sum);
}

TEST(CsvTable, IsReadInEveryForm) {
  const struct {
    const char* dimension;
    const char* facts;
  } cases[] = {
      {"id,name\n1,a\n2,\"b \"\"x\"\",\ny\"\n", "id,v\n1,0.25\n2,2\n"},
      {"\xEF\xBB\xBFid,name\r\n1,a\r\n2,\"b \"\"x\"\",\ny\"\r\n", "id,v\r\n1,0.25\r\n2,2"},
      {"name,other,id\n\"a\",,1\n\"b \"\"x\"\",\ny\",z,\"2\"", "v,id\n\"0.25\",1\n2,\"2\"\n"},
  };
  for (const auto& each : cases) {
    const test::BuiltCube built({kSchema, {{"d", each.dimension}, {"fact", each.facts}}});
    ExpectNamesAndSum(built.file(), {"a", "b \"x\",\ny"}, 2.25);
  }
}

std::string Utf16(const std::string& utf8, bool big_end) {
  std::string bytes = big_end ? "\xFE\xFF" : "\xFF\xFE";
  for (std::string_view rest = utf8; !rest.empty();) {
    char32_t code = TakeLetter(rest).code;
    std::vector<char32_t> units{code};
    if (code > 0xFFFF) units = {0xD7C0 + (code >> 10), 0xDC00 + (code & 0x3FF)};
    for (const char32_t unit : units) {
      const char low = static_cast<char>(unit);
      const char high = static_cast<char>(unit >> 8);
      bytes += big_end ? std::string{high, low} : std::string{low, high};
    }
  }
  return bytes;
}

/// As gzip -n packs it.
std::string Packed(const std::string& text) {
  std::string bytes("\x1F\x8B\x08\0\0\0\0\0\0\x03\x01", 11);
  const auto number = [&](uint32_t value, int count) {
    for (; count > 0; --count, value >>= 8) bytes += static_cast<char>(value);
  };
  number(static_cast<uint32_t>(text.size()), 2);
  number(~static_cast<uint32_t>(text.size()), 2);
  bytes += text;
  number(libdeflate_crc32(0, text.data(), text.size()), 4);
  number(static_cast<uint32_t>(text.size()), 4);
  return bytes;
}

TEST(CsvTable, IsReadAsAccountantsProgramsWriteIt) {
  const std::string plain = "day;id;v\n31.01.2024;1;1.234,50\n1.2.2024;2;-0,25\n";
  const std::string wide = "day;id;v\n31.01.2024;1;1\u00A0234,50\n1.2.2024;2;\"-,25\"\n";
  using Files = std::vector<std::pair<std::string, std::string>>;
  const Files cases[] = {
      {{"fact.csv", plain}},
      {{"fact.csv", Utf16(wide, false)}},
      {{"fact.csv", Utf16(wide, true)}},
      {{"fact.csv.gz", Packed(plain.substr(0, 10)) + Packed(plain.substr(10))}},
      {{"fact.csv.gz", Packed(Utf16(wide, false))}},
      {{"fact/1.csv", "id;v;day\n1;1234,5;31.1.2024\n"},
       {"fact/2.csv.gz", Packed("day;id;v\n01.02.2024;2;-,25")},
       {"fact/notes.txt", "none"}},
  };
  std::string schema = kSchema;
  schema.insert(schema.find("<Cube"),
                R"(<Annotations><Annotation name="csv.separator">;</Annotation>
    <Annotation name="csv.decimal">,</Annotation><Annotation name="x">y</Annotation>
    <Annotation name="csv.dates">d.m.yyyy</Annotation></Annotations>)");
  schema.insert(schema.find("<Dimension"),
                R"(<Dimension name="Day" type="TimeDimension" foreignKey="day">
    <Hierarchy hasAll="false" primaryKey="day"><Table name="days"/>
    <Level name="Day" column="day"/></Hierarchy></Dimension>)");
  test::NativeFiles files;
  for (const Files& each : cases) {
    SCOPED_TRACE(each[0].first);
    const test::TemporaryFolder folder;
    std::filesystem::create_directory(folder.File("fact"));
    const auto write = [&](const std::string& name, const std::string& text) {
      std::ofstream(folder.File(name), std::ios::binary) << text;
    };
    write("schema.xml", schema);
    write("d.csv", "id;name\n1;4.1.2010\n2;\"b\"\n");
    write("days.csv", "day\n2024-01-31\n1.2.2024\n");
    for (const auto& [name, text] : each) write(name, text);
    BuildCubeFile(files, test::NativeLocale("en_US"),
                  {folder.File("schema.xml"), folder.path(), folder.File("out.cub")}, {});
    const auto file = CubeFile::Open(files, folder.File("out.cub"));
    const StoredCube& cube = file->cubes().at(0);
    EXPECT_EQ(cube.facts->Read({{0}, {}, {}})[0].numbers[0], 1234.25);
    EXPECT_EQ(cube.model.hierarchies[0].Name(1), "2024-02-01");
    EXPECT_EQ(cube.model.hierarchies[1].Name(0), "4.1.2010") << "an account may look like a date";
  }
}

TEST(CsvTable, HasItsDatesInEveryColumnThatLeadsToThem) {
  const std::string table = R"(<Hierarchy hasAll="false" primaryKey="d"><Table name="dates"/>
<Level name="D" column="d"/></Hierarchy></Dimension>)";
  const test::BuiltCube built(test::CubeTexts{
      R"(<Schema name="S"><Annotations><Annotation name="csv.dates">d.m.yyyy</Annotation></Annotations>
<Cube name="C"><Table name="fact"/><Dimension name="Date" foreignKey="d">)" +
          table + R"(<Dimension name="Due" foreignKey="due">)" + table +
          R"(<Measure name="N" column="n" aggregator="sum"/></Cube></Schema>)",
      {{"dates", "d\n1.2.2024\n"}, {"fact", "d,due,n\n01.02.2024,1.02.2024,3\n"}}});
  EXPECT_EQ(built.cube().model.fact_count, 1U);
}

TEST(CsvTable, TellsBadRowsTogetherOrLeavesThemOut) {
  const std::string bad[] = {"1,x", "3,1", "1", "2,\"\"", "2,1.2.3"};
  std::string rows = "id,v,w\n";
  for (int i = 0; i < 400'000; ++i) {
    rows += i % 80'000 == 7 ? bad[i / 80'000] + (i < 160'000 ? ",1\n" : ",2\n") : "2,1,1\n";
  }
  std::string schema = kSchema;
  schema.insert(schema.find("<Measure"), R"(<Measure name="W" column="w" aggregator="sum"/>)");
  const test::TemporaryFolder folder;
  std::ofstream(folder.File("schema.xml")) << schema;
  std::ofstream(folder.File("d.csv")) << "id,name\n1,a\n2,b\n";
  BuildRequest request{folder.File("schema.xml"), folder.path(), folder.File("out.cub")};
  test::NativeFiles files;
  request.facts = ReaderOf(std::as_bytes(std::span(rows)));
  request.facts_name = "piped";
  const auto build = [&] { return BuildCubeFile(files, test::NativeLocale("en_US"), request, {}); };
  const auto is_told = [](const std::vector<std::string>& told) {
    const char* words[] = {"piped, line 9: \"x\" in column \"v\"", "line 80009: the key \"3\"",
                           "line 160009: has 2 fields", "line 240009: \"\" in column",
                           "line 320009: \"1.2.3\""};
    ASSERT_EQ(told.size(), std::size(words));
    for (std::size_t i = 0; i < told.size(); ++i) {
      EXPECT_NE(told[i].find(words[i]), std::string::npos) << told[i];
    }
  };
  try {
    build();
    ADD_FAILURE() << "a cube was built";
  } catch (const BadRows& failure) {
    is_told(failure.rows());
  }
  EXPECT_FALSE(files.Exists(request.output_path));
  request.leave_out_bad_rows = true;
  is_told(build().bad_rows);
  const auto sums =
      CubeFile::Open(files, request.output_path)->cubes().at(0).facts->Read({{0, 1}, {}, {}});
  EXPECT_EQ(sums[0].numbers[0], 400'000 - 5);
  EXPECT_EQ(sums[1].numbers[0], 400'000 - 5);

  rows = "id,v,w\n";
  for (int i = 0; i < 30; ++i) rows += "1,x,1\n";
  request.leave_out_bad_rows = false;
  request.facts = ReaderOf(std::as_bytes(std::span(rows)));
  try {
    build();
  } catch (const BadRows& failure) {
    EXPECT_EQ(failure.rows().size(), 20u);
  }
}

TEST(CsvForm, IsReadToTheLetterOrRefused) {
  const std::pair<const char*, const char*> numbers[] = {{"1.234,5", "1234.5"},
                                                         {"-1 234 567", "-1234567"},
                                                         {"+0,5", "+0.5"},
                                                         {",5", ".5"},
                                                         {"12.34,5", ""},
                                                         {"1.23", ""},
                                                         {"1234.567", ""},
                                                         {".123", ""},
                                                         {"1'234", "1234"},
                                                         {"1.234.56", ""},
                                                         {"x", ""},
                                                         {"", ""}};
  for (const auto& [text, number] : numbers) EXPECT_EQ(WithPoint(text), number) << text;
  const struct {
    const char *form, *text, *date;
  } dates[] = {{"dd.mm.yyyy", "31.01.2024", "2024-01-31"}, {"dd.mm.yyyy", "1.1.2024", ""},
               {"d.m.yy", "1.12.99", "1999-12-01"},        {"m/d/yyyy", "2/29/2023", ""},
               {"yyyymmdd", "20240229", "2024-02-29"},     {"dd.mm.yyyy", "31.01.2024 ", ""}};
  for (const auto& each : dates) {
    EXPECT_EQ(IsoDateIn(each.form, each.text).value_or(""), each.date) << each.text;
  }
  CsvForm form;
  const char* refused[][3] = {{"x", "", ""},           {"", ";", ""},   {"", "", "dd.mm"},
                              {"", "", "dd mon yyyy"}, {"", "", "dmy"}, {"", "", "d.m.yyyy d"}};
  for (const auto& each : refused) {
    EXPECT_EQ(test::NumberOf([&] { SetForm(form, each[0], each[1], each[2]); }), 5);
  }
}

TEST(CsvTable, IsReadInPiecesThatCutAnything) {
  std::string lines;
  while (lines.size() < (std::size_t{5} << 19)) lines += "a \xC3\xBC,\r\n";
  std::string facts = "id,v\r\n";
  constexpr int kFacts = 240'000;
  for (int i = 0; i < kFacts; ++i) facts += i % 3 == 0 ? "1,\"0.25\"\r\n" : "2,0.25\r\n";
  const test::BuiltCube built(
      {kSchema, {{"d", "id,name\n1,a\n2,\"" + lines + "\"\n"}, {"fact", facts}}});
  ExpectNamesAndSum(built.file(), {"a", lines}, 0.25 * kFacts);
}

/// Rows of several parts, whose values become decimals, NULL, doubles and new texts in a late one.
std::string RowsOfManyParts() {
  std::string rows = "id,v,w,t\n";
  for (int i = 0; i < 300'000; ++i) {
    const bool late = i >= 260'000;
    rows += std::to_string(i * 7 % 3 + 1) + (late ? ",0.25" : ",2") + (late ? "," : ",1") +
            (i == 299'999 ? "1e40" : "") + ",t" + std::to_string(late ? i % 9 : i % 4) + "\n";
  }
  return rows;
}

/// Its facts have equal keys that can be put together, of more than 64 bits.
std::string SchemaOfWideKeys() {
  std::string schema = kSchema;
  const std::size_t begin = schema.find("<Dimension");
  const std::string dimension = schema.substr(begin, schema.find("<Measure") - begin);
  for (int i = 0; i < 7; ++i) {
    std::string other = dimension;
    other.insert(other.find("D\"") + 1, std::to_string(i));
    schema.insert(begin, other);
  }
  return schema;
}

TEST(CsvTable, GivesTheSameCubeInAnyThreadsAndMemory) {
  std::string schema = kSchema;
  schema.insert(schema.find("</Cube>"), R"(<Measure name="W" column="w" aggregator="sum"/>
    <Measure name="T" column="t" aggregator="distinct-count"/>
    <Measure name="N" column="w" aggregator="count"/>)");
  const test::TemporaryFolder folder;
  std::string names = "id,name\n3,c\n1,a\n2,b\n";
  for (int id = 4; id < 300; ++id) names += std::to_string(id) + ",x" + std::to_string(id) + "\n";
  std::ofstream(folder.File("d.csv")) << names;
  std::ofstream(folder.File("fact.csv"), std::ios::binary) << RowsOfManyParts();
  test::NativeFiles files;
  const struct {
    unsigned threads;
    uint64_t memory;
  } ways[] = {{1, 0}, {3, 0}, {2, 1000}};
  for (const std::string& each : {SchemaOfWideKeys(), schema}) {
    std::ofstream(folder.File("schema.xml")) << each;
    std::vector<std::string> cubes;
    for (const auto& [threads, memory] : ways) {
      BuildRequest request{
          folder.File("schema.xml"), folder.path(), folder.File("out.cub"), {}, threads};
      request.memory = memory;
      const auto report = BuildCubeFile(files, test::NativeLocale("en_US"), request, {});
      EXPECT_EQ(report.cubes[0].stored_cells, each == schema ? 300'000U : 3U);
      cubes.push_back(ReadWholeFile(files, request.output_path));
      EXPECT_TRUE(cubes.back() == cubes.front()) << threads << " threads, " << memory << " bytes";
    }
  }
  const auto file = CubeFile::Open(files, folder.File("out.cub"));
  const auto sums = file->cubes().at(0).facts->Read({{0, 1, 2, 3}, {}, {}});
  const double expected[] = {530'000, 1e40, 9, 260'001};
  for (std::size_t measure = 0; measure < 4; ++measure) {
    EXPECT_EQ(sums[measure].numbers[0], expected[measure]) << measure;
  }
}

TEST(CsvTable, IsAFailureWhenItIsChangedWhileItIsRead) {
  const std::string row = "1,0.25\n";
  std::string rows = "id,v\n";
  while (rows.size() < (std::size_t{3} << 20)) rows += row;
  const std::string endless = "id,v\n1,\"" + std::string(std::size_t{20} << 20, 'x');
  const struct {
    const std::string& before;
    std::string after;
    const char* words;
  } cases[] = {
      {rows, rows.substr(0, row.size() * 10), "was changed while it was read; replace it with mv"},
      {rows, rows + row, "was changed while it was read; replace it with mv"},
      {endless, endless, "fact.csv, line 2: the row is longer than 16 MB; a quote may be missing"},
  };
  test::NativeFiles files;
  for (const auto& each : cases) {
    const test::TemporaryFolder folder;
    std::ofstream(folder.File("fact.csv"), std::ios::binary) << each.before;
    const auto source = OpenCsvFolder(files, folder.path());
    const auto table = source->Open({"fact"}, {"id", "v"});
    std::this_thread::sleep_for(std::chrono::milliseconds(20));  // another time of modification
    std::ofstream(folder.File("fact.csv"), std::ios::binary) << each.after;
    const std::string said = test::DescriptionOf([&] {
      while (table->Next()) EXPECT_EQ(table->Fields()[1].text, "0.25");
    });
    EXPECT_NE(said.find(each.words), std::string::npos) << said;
  }
}

TEST(CsvTable, IsComparedWithItsBeginningWhenTheCubeIsWhole) {
  const test::TemporaryFolder folder;
  const std::string facts = folder.File("fact.csv");
  const auto append = [&] { std::ofstream(facts, std::ios::app) << "2,7\n"; };
  [[maybe_unused]] const auto replace = [&] {
    std::ofstream(folder.File("new")) << "id,v\n2,7\n";
    std::filesystem::rename(folder.File("new"), facts);
  };
  const BuildRequest request{folder.File("schema.xml"), folder.path(), folder.File("out.cub"), {}};
  test::NativeFiles files;
  std::ofstream(folder.File("schema.xml")) << kSchema;
  std::ofstream(folder.File("d.csv")) << "id,name\n1,a\n2,b\n";
  const auto build = [&](const std::function<void()>& act) {
    std::ofstream(facts) << "id,v\n1,0.25\n";
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return test::DescriptionOf([&] {
      BuildCubeFile(files, test::NativeLocale("en_US"), request, [&](const BuildStep& step) {
        if (step.what == "writing C") act();
      });
    });
  };
  const std::string said = build(append);
  EXPECT_NE(said.find("fact.csv\": it was changed while it was read"), std::string::npos) << said;
  EXPECT_FALSE(files.Exists(request.output_path));
#ifndef _WIN32  // where a table that is open cannot be replaced
  build(replace);
  ExpectNamesAndSum(*CubeFile::Open(files, request.output_path), {"a", "b"}, 0.25);
#endif
}

class SqliteTables : public testing::Test {
 protected:
  /// What SQLite says to it.
  int Execute(const std::string& sql, const std::string& name = "data.db") {
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(folder_.File(name).c_str(), &handle), SQLITE_OK);
    const int code = sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr);
    sqlite3_close(handle);
    return code;
  }
  std::shared_ptr<const CubeFile> BuildWhile(
      const std::function<void(const std::string& step)>& act) {
    std::ofstream(folder_.File("schema.xml")) << kSchema;
    test::NativeFiles files;
    BuildCubeFile(files, test::NativeLocale("en_US"),
                  {folder_.File("schema.xml"), folder_.File("data.db"), folder_.File("out.cub")},
                  [&](const BuildStep& step) { act(step.what); });
    return CubeFile::Open(files, folder_.File("out.cub"));
  }
  std::shared_ptr<const CubeFile> Build(const std::string& sql) {
    EXPECT_EQ(Execute(sql), SQLITE_OK);
    return BuildWhile([](const std::string&) {});
  }

  test::TemporaryFolder folder_;
};

TEST_F(SqliteTables, AreReadWithTheirTypes) {
  const auto file = Build(
      "CREATE TABLE d(id INTEGER, name TEXT); INSERT INTO d VALUES (1, 'a'), (2, NULL);"
      "CREATE TABLE f(id INTEGER, v REAL); INSERT INTO f VALUES (1, 0.1), (2, 0.2), (2, NULL);"
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 131069) "
      "INSERT INTO f SELECT 1, 0 FROM n;"  // two parts, to the last row
      "CREATE VIEW fact AS SELECT * FROM f");
  ExpectNamesAndSum(*file, {"a", "#null"}, 0.3);
}

TEST_F(SqliteTables, AreReadInOneStateOrNotAtAll) {
  const std::string tables =
      "CREATE TABLE d(id, name); INSERT INTO d VALUES (1, 'a'), (2, 'b');"
      "CREATE TABLE fact(id, v); INSERT INTO fact VALUES (1, 0.25)";
  const std::string change =
      "BEGIN; UPDATE d SET name = name || name; UPDATE fact SET v = 1; COMMIT;"
      "PRAGMA wal_checkpoint";
  EXPECT_EQ(Execute(tables + ";" + change, "other.db"), SQLITE_OK);
  EXPECT_EQ(Execute("CREATE TABLE other(x)", "without.db"), SQLITE_OK);
  const auto copy = [this](const std::string& name) {
    std::ifstream from(folder_.File(name), std::ios::binary);
    std::ofstream(folder_.File("data.db"), std::ios::binary) << from.rdbuf();
    return SQLITE_OK;
  };
  const struct {
    const char* log;
    const char* step;
    std::function<int()> act;
    int code;
    const char* words;
  } cases[] = {
      {"delete", "reading dimension D", [&] { return copy("other.db"); }, SQLITE_OK, "changed"},
      {"delete", "reading dimension D", [&] { return copy("without.db"); }, SQLITE_OK, "changed"},
      {"delete", "reading fact", [&] { return copy("schema.xml"); }, SQLITE_OK, "changed"},
      {"delete", "writing C", [&] { return copy("other.db"); }, SQLITE_OK, "changed"},
      {"delete", "reading fact", [&] { return Execute(change); }, SQLITE_BUSY, ""},
      {"wal", "reading fact", [&] { return Execute(change); }, SQLITE_OK, ""},
  };
  for (const auto& each : cases) {
    std::filesystem::remove(folder_.File("data.db"));
    sqlite3* other_program = nullptr;
    EXPECT_EQ(sqlite3_open(folder_.File("data.db").c_str(), &other_program), SQLITE_OK);
    const std::string sql = "PRAGMA journal_mode=" + std::string(each.log) + ";" + tables;
    EXPECT_EQ(sqlite3_exec(other_program, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    std::function<int()> act = each.act;
    const std::string said = test::DescriptionOf([&] {
      const auto file = BuildWhile([&](const std::string& step) {
        if (step != each.step || !act) return;
        EXPECT_EQ(std::exchange(act, nullptr)(), each.code);
      });
      ExpectNamesAndSum(*file, {"a", "b"}, 0.25);
    });
    sqlite3_close(other_program);
    EXPECT_EQ(act, nullptr);
    const std::string wanted = *each.words == 0 ? "no failure" : "data.db\": it was changed while";
    EXPECT_NE(said.find(wanted), std::string::npos) << each.step << ": " << said;
  }
}

TEST_F(SqliteTables, AreReadWhenAWriterHasCommitted) {
  EXPECT_EQ(Execute("CREATE TABLE d(id, name); INSERT INTO d VALUES (1, 'a'), (2, 'b');"
                    "CREATE TABLE fact(id, v); INSERT INTO fact VALUES (1, 0.25)"),
            SQLITE_OK);
  sqlite3* writer = nullptr;
  EXPECT_EQ(sqlite3_open(folder_.File("data.db").c_str(), &writer), SQLITE_OK);
  const auto tell = [&](const char* sql) {
    EXPECT_EQ(sqlite3_exec(writer, sql, nullptr, nullptr, nullptr), SQLITE_OK);
  };
  tell("BEGIN EXCLUSIVE; UPDATE fact SET v = 0.5");
  std::thread later([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    tell("COMMIT");
  });
  ExpectNamesAndSum(*BuildWhile([](const std::string&) {}), {"a", "b"}, 0.5);
  later.join();
  sqlite3_close(writer);
}

TEST_F(SqliteTables, RefusalsNameTheTableTheColumnAndTheRow) {
  const std::string dimension = "CREATE TABLE d(id, name); INSERT INTO d VALUES (1, 'a');";
  const std::string facts = "CREATE TABLE fact(id, v); INSERT INTO fact VALUES (1, 2), (1, x'00')";
  const std::pair<std::string, std::string> cases[] = {
      {dimension, "no table \"fact\""},
      {"CREATE TABLE d(id, title); CREATE TABLE fact(id, v)", "no column \"name\""},
      {dimension + facts, "table fact, row 2"}};
  for (const auto& [sql, words] : cases) {
    std::filesystem::remove(folder_.File("data.db"));
    const std::string said = test::DescriptionOf([&, &tables = sql] { Build(tables); });
    EXPECT_NE(said.find(words), std::string::npos) << said;
  }
  test::NativeFiles files;
  for (const std::string& other : {folder_.File("schema.xml"), folder_.File("missing")}) {
    EXPECT_THROW(OpenTableSource(files, other), Failure);
  }
}

}  // namespace
}  // namespace vok::olap
