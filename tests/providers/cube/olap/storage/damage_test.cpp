// Cube files that were cut short or changed: a failure, never a crash or another number.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "native.h"
#include "platform/failure.h"
#include "providers/cube/olap/storage/block_cache.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

using Bytes = std::vector<std::byte>;

/// Enough facts for few cells that aggregates are stored of them.
test::CubeTexts AggregatedCube() {
  test::CubeTexts texts{
      R"(<Schema name="S"><Cube name="QEL"><Table name="fact"/>
<Dimension name="Date" type="TimeDimension" foreignKey="month"><Hierarchy primaryKey="id"><Table name="month"/>
  <Level name="Year" column="y" type="Integer"/><Level name="Month" column="m" type="Integer"/></Hierarchy></Dimension>
<Dimension name="Line" foreignKey="line"><Hierarchy hasAll="false" primaryKey="id"><Table name="line"/>
  <Level name="Line" column="id" type="Integer"/></Hierarchy></Dimension>
<Dimension name="File" foreignKey="file"><Hierarchy primaryKey="id"><Table name="file"/>
  <Level name="Ledger" column="ledger"/><Level name="File" column="id" type="Integer"/></Hierarchy></Dimension>
<Measure name="Amount" column="amount" aggregator="sum"/><Measure name="Least" column="amount" aggregator="min"/>
<Measure name="Files" column="file" aggregator="distinct-count"/>
<CalculatedMember name="Twice" dimension="Measures" formula="[Measures].[Amount] * 2"/></Cube></Schema>)",
      {{"month", "id,y,m\n0,2001,1\n1,2001,2\n2,2002,1\n3,2002,2\n"},
       {"line", "id\n"},
       {"file", "id,ledger\n"},
       {"fact", "month,line,file,amount\n"}}};
  constexpr int kLines = 30;
  constexpr int kFiles = 25;
  constexpr int kFacts = 1600;
  for (int i = 0; i < kLines; ++i) texts.tables["line"] += std::to_string(i) + "\n";
  for (int i = 0; i < kFiles; ++i) {
    texts.tables["file"] += std::to_string(i) + ",L" + std::to_string(i % 2) + "\n";
  }
  for (int i = 0; i < kFacts; ++i) {
    texts.tables["fact"] += std::to_string(i % 4) + "," + std::to_string(i * 7 % kLines) + "," +
                            std::to_string(i * 11 / 3 % kFiles) + "," +
                            (i % 9 == 0 ? "" : std::to_string(i * 13 % 101)) + "\n";
  }
  return texts;
}

/// `first` is the year of the first facts.
Bytes SampleFile(const std::string& first = "2001") {
  test::CubeTexts texts = AggregatedCube();
  std::string& months = texts.tables.at("month");
  months.replace(months.find("2001"), first.size(), first);
  const test::BuiltCube built(texts);
  std::ifstream stream(built.path(), std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(stream), {});
  Bytes bytes(text.size());
  std::memcpy(bytes.data(), text.data(), text.size());
  return bytes;
}

void Append(std::string& all, const std::vector<FactColumn>& columns) {
  for (const FactColumn& column : columns) {
    all.append(reinterpret_cast<const char*>(column.numbers.data()), column.numbers.size() * 8);
    for (const CellState state : column.states) all += static_cast<char>(state);
  }
}

FactQuery AllMeasures(const StoredCube& cube) {
  FactQuery query;
  for (uint32_t measure = 0; measure < cube.model.measures.size(); ++measure) {
    query.measures.push_back(measure);
  }
  return query;
}

/// What a query may ask of one hierarchy so that each aggregate of it is read: nothing, or of each
/// level the first member, the last one, or those between.
std::vector<std::vector<IdRange>> Choices(const Hierarchy& hierarchy) {
  std::vector<std::vector<IdRange>> choices{{}};
  for (const Level& level : hierarchy.levels()) {
    if (level.members.size() == 1) continue;
    const uint32_t first_end = hierarchy.Leaves(level.members.begin).end;
    const uint32_t last_begin = hierarchy.Leaves(level.members.end - 1).begin;
    choices.push_back({{0, first_end}});
    choices.push_back({{last_begin, hierarchy.LeafCount()}});
    if (first_end < last_begin) choices.push_back({{first_end, last_begin}});
  }
  return choices;
}

/// Every stored aggregate, through slices that each of them answers best.
std::string ReadAggregates(const StoredCube& cube) {
  constexpr std::size_t kLines = 1;  // the inner hierarchy
  std::vector<FactQuery> queries{AllMeasures(cube)};
  for (std::size_t index = 0; index < cube.model.hierarchies.size(); ++index) {
    std::vector<FactQuery> more;
    for (const FactQuery& query : queries) {
      for (const auto& leaves : Choices(cube.model.hierarchies[index])) {
        more.push_back(query);
        more.back().leaves.push_back(index == kLines ? std::vector<IdRange>{} : leaves);
        if (index == kLines) break;
      }
    }
    queries = std::move(more);
  }
  std::string all;
  for (const FactQuery& query : queries) Append(all, cube.facts->Read(query));
  return all;
}

/// The facts themselves: no aggregate has slices that cut into every member.
std::string ReadFacts(const StoredCube& cube) {
  std::string all;
  FactQuery query = AllMeasures(cube);
  for (const Hierarchy& hierarchy : cube.model.hierarchies) {
    query.leaves.push_back({{1, hierarchy.LeafCount()}});
  }
  Append(all, cube.facts->Read(query));
  return all;
}

/// Everything that the file says, as one text.
std::string ReadAll(const CubeFile& file) {
  std::string all;
  for (const StoredCube& cube : file.cubes()) {
    all += cube.model.name + cube.model.caption;
    for (const Measure& measure : cube.model.measures) all += measure.name + measure.format_string;
    for (const auto& member : cube.model.calculated) all += member.name + member.formula;
    for (const Hierarchy& hierarchy : cube.model.hierarchies) {
      for (MemberId member = 0; member < hierarchy.MemberCount(); ++member) {
        all += hierarchy.UniqueName(member);
        all += hierarchy.Caption(member);
      }
    }
    all += ReadAggregates(cube) + ReadFacts(cube);
  }
  return all;
}

std::string ReadAll(const Bytes& bytes) { return ReadAll(*CubeFile::Open(bytes, "sample.cub")); }

/// Writes into the file that is there, as cp does.
void Overwrite(const std::string& path, std::span<const std::byte> bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

TEST(OverwrittenCubeFile, IsAFailureWhatIsReadAfterwards) {
  const Bytes old = SampleFile();
  Bytes damaged = old;
  for (std::byte& byte : damaged) byte ^= std::byte{1};
  const Bytes other = SampleFile("1999");
  const test::TemporaryFolder folder;
  const std::string path = folder.File("sample.cub");
  for (const std::span<const std::byte> now :
       {std::span<const std::byte>(), std::span(old).first(old.size() / 2),
        std::span<const std::byte>(damaged), std::span<const std::byte>(other)}) {
    Overwrite(path, old);
    const auto file = CubeFile::Open(test::NativeFiles(), path);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));  // another time of modification
    Overwrite(path, now);
    EXPECT_EQ(file->cubes()[0].model.name, "QEL");
    try {
      ReadAll(*file);
      ADD_FAILURE() << now.size();
    } catch (const Failure& failure) {
      EXPECT_NE(failure.description().find("was changed while it was read; replace it with mv"),
                std::string::npos)
          << failure.description();
    }
  }
}

TEST(OverwrittenCubeFile, IsReadAsOneOfBothOrNotAtAll) {
  const Bytes files[] = {SampleFile(), SampleFile("1999")};
  const std::string answers[] = {ReadAll(files[0]), ReadAll(files[1])};
  const test::TemporaryFolder folder;
  const std::string path = folder.File("sample.cub");
  Overwrite(path, files[0]);
  std::atomic<bool> done = false;
  std::thread writer([&] {
    for (std::size_t i = 0; !done; ++i) Overwrite(path, files[i % 2]);
  });
  for (int i = 0; i < 300; ++i) {
    try {
      const std::string answer = ReadAll(*CubeFile::Open(test::NativeFiles(), path));
      EXPECT_TRUE(answer == answers[0] || answer == answers[1]);
    } catch (const Failure&) {
      continue;
    }
  }
  done = true;
  writer.join();
}

TEST(BlockCache, HoldsWhatWasUsedLast) {
  constexpr std::size_t kSize = 100;
  BlockCache cache(3 * kSize);
  for (uint32_t index = 0; index < 3; ++index) cache.Keep(index, HeldBlock::New(kSize).first);
  const HeldBlock first = cache.Find(0);
  cache.Keep(3, HeldBlock::New(kSize).first);
  EXPECT_FALSE(cache.Find(1));
  for (const uint32_t index : {0u, 2u, 3u}) EXPECT_TRUE(cache.Find(index)) << index;
  cache.Keep(4, HeldBlock::New(4 * kSize).first);
  EXPECT_FALSE(cache.Find(0));
  EXPECT_TRUE(cache.Find(4));
  EXPECT_EQ(first.bytes().size(), kSize);
}

TEST(DamagedCubeFile, AnyChangedByteIsNoticed) {
  const Bytes good = SampleFile();
  ASSERT_LT(good.size(), 20000u);
  ReadAll(good);
  Bytes bytes = good;
  // Every byte of what is read when the file is opened, many of the blocks between.
  constexpr std::size_t kEnds = 1500;
  const auto step = [&](std::size_t at) { return at < kEnds || at + kEnds > good.size() ? 1 : 7; };
  for (std::size_t at = 0; at < good.size(); at += step(at)) {
    bytes[at] ^= static_cast<std::byte>(1u << at % 8);
    EXPECT_THROW(ReadAll(bytes), Failure) << "byte " << at;
    bytes[at] = good[at];
  }
}

TEST(DamagedCubeFile, AnyShorterOrLongerFileIsNoticed) {
  const Bytes good = SampleFile();
  for (std::size_t length = 0; length < good.size(); ++length) {
    const Bytes bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_THROW(CubeFile::Open(bytes, "sample.cub"), Failure) << "length " << length;
  }
  Bytes longer = good;
  longer.resize(good.size() + 8);
  EXPECT_THROW(CubeFile::Open(longer, "sample.cub"), Failure);
}

TEST(DamagedCubeFile, FailureSaysWhatIsWrong) {
  const Bytes good = SampleFile();
  Bytes newer = good;
  newer[8] = std::byte{3};
  Bytes other = good;
  other[0] = std::byte{'x'};
  const Bytes cut(good.begin(), good.end() - 8);
  const struct {
    const Bytes& bytes;
    const char* words;
  } cases[] = {{newer, "format version 3, newer than this program reads"},
               {other, "is not a cube file"},
               {cut, "damaged or was cut short"}};
  for (const auto& each : cases) {
    try {
      CubeFile::Open(each.bytes, "sample.cub");
      ADD_FAILURE() << each.words;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), failure_number::kUnspecified);
      EXPECT_NE(failure.description().find(each.words), std::string::npos) << failure.description();
      EXPECT_NE(failure.description().find("sample.cub"), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace vok::olap
