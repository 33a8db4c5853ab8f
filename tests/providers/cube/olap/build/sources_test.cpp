// The two kinds of tables, and the forms that a CSV file may have.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include "native.h"
#include "platform/failure.h"
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

TEST(CsvTable, GivesTheSameCubeHoweverManyThreadsReadIt) {
  std::string schema = kSchema;
  schema.insert(schema.find("</Cube>"), R"(<Measure name="W" column="w" aggregator="sum"/>
    <Measure name="T" column="t" aggregator="distinct-count"/>
    <Measure name="N" column="w" aggregator="count"/>)");
  const test::TemporaryFolder folder;
  std::ofstream(folder.File("schema.xml")) << schema;
  std::ofstream(folder.File("d.csv")) << "id,name\n3,c\n1,a\n2,b\n";
  std::ofstream(folder.File("fact.csv"), std::ios::binary) << RowsOfManyParts();
  test::NativeFiles files;
  std::vector<std::string> cubes;
  for (const unsigned threads : {1U, 3U}) {
    const BuildRequest request{
        folder.File("schema.xml"), folder.path(), folder.File("out.cub"), {}, threads};
    BuildCubeFile(files, test::NativeLocale("en_US"), request, {});
    cubes.push_back(ReadWholeFile(files, request.output_path));
  }
  EXPECT_TRUE(cubes[0] == cubes[1]);
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
    const auto table = source->Open("fact", {"id", "v"});
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
      BuildCubeFile(files, test::NativeLocale("en_US"), request,
                    [&](const std::string& step, double) {
                      if (step == "writing C") act();
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
  std::shared_ptr<const CubeFile> Build(const std::string& sql) {
    const std::string database = folder_.File("data.db");
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(database.c_str(), &handle), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(handle);
    std::ofstream(folder_.File("schema.xml")) << kSchema;
    test::NativeFiles files;
    BuildCubeFile(files, test::NativeLocale("en_US"),
                  {folder_.File("schema.xml"), database, folder_.File("out.cub")}, {});
    return CubeFile::Open(files, folder_.File("out.cub"));
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
