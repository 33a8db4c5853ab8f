// Cube files that were cut short or changed: a failure, never a crash or another number.
#include <gmock/gmock.h>

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
#include "providers/cube/olap/storage/cube_file.h"
#include "tests/support/cubes/sample_cube.h"
#include "tests/support/failures.h"
#include "tests/support/temporary_folder.h"

namespace vok::olap {
namespace {

using Bytes = std::vector<std::byte>;

/// "aggregates.cub", with as many facts for few cells that aggregates are stored of them, or
/// "ledger.cub".
Bytes SampleFile(const std::string& name) {
  std::ifstream stream(VOK_CUBE_FILES + ('/' + name), std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(stream), {});
  Bytes bytes(text.size());
  std::memcpy(bytes.data(), text.data(), text.size());
  return bytes;
}

/// The slices that each aggregate answers best, and one that cuts into all members.
std::vector<FactQuery> Slices(const CubeModel& model) {
  FactQuery query;
  for (uint32_t i = 0; i < model.measures.size(); ++i) query.measures.push_back(i);
  for (const Hierarchy& each : model.hierarchies) query.leaves.push_back({{1, each.LeafCount()}});
  std::vector<FactQuery> slices{query};
  const Hierarchy& first = model.hierarchies.front();
  const Hierarchy& last = model.hierarchies.back();
  for (MemberId a = 0; a < first.MemberCount(); ++a) {
    for (MemberId b = 0; b < last.MemberCount(); ++b) {
      query.leaves.assign(model.hierarchies.size(), {});
      query.leaves.front() = {first.Leaves(a)};
      query.leaves.back() = {last.Leaves(b)};
      slices.push_back(query);
    }
  }
  return slices;
}

/// Everything that the file says, as one text.
std::string ReadAll(const CubeFile& file) {
  std::string all;
  for (const StoredCube& cube : file.cubes()) {
    for (const Hierarchy& hierarchy : cube.model.hierarchies) {
      for (MemberId member = 0; member < hierarchy.MemberCount(); ++member) {
        all += hierarchy.UniqueName(member);
        all += hierarchy.Caption(member);
      }
    }
    for (const FactQuery& query : Slices(cube.model)) {
      for (const FactColumn& column : cube.facts->Read(query)) {
        all.append(reinterpret_cast<const char*>(column.numbers.data()), column.numbers.size() * 8);
        for (const CellState state : column.states) all += static_cast<char>(state);
      }
    }
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
  const Bytes old = SampleFile("aggregates.cub");
  Bytes damaged = old;
  for (std::byte& byte : damaged) byte ^= std::byte{1};
  const Bytes other = SampleFile("ledger.cub");
  const test::TemporaryFolder folder;
  const std::string path = folder.File("sample.cub");
  for (const std::span<const std::byte> now :
       {std::span<const std::byte>(), std::span(old).first(old.size() / 2),
        std::span<const std::byte>(damaged), std::span<const std::byte>(other)}) {
    Overwrite(path, old);
    const auto file = CubeFile::Open(test::NativeFiles(), path);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));  // another time of modification
    Overwrite(path, now);
    const std::string said = test::DescriptionOf([&] { ReadAll(*file); });
    EXPECT_NE(said.find("was changed while it was read; replace it with mv"), std::string::npos)
        << said;
  }
}

TEST(OverwrittenCubeFile, IsReadAsOneOfBothOrNotAtAll) {
  const Bytes files[] = {SampleFile("aggregates.cub"), SampleFile("ledger.cub")};
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

/// Names that are longer together than what stays in memory of them, some of them than a page.
TEST(LongNames, AreReadFromTheFileAsTheyWereWhenItWasOpened) {
  test::CubeTexts texts;
  texts.schema =
      R"(<Schema name="S"><Cube name="C"><Table name="fact"/><Dimension name="Line" foreignKey="id">
      <Hierarchy primaryKey="id"><Table name="line"/><Level name="Line" column="id"/></Hierarchy>
      </Dimension><Measure name="V" column="id" aggregator="count"/></Cube></Schema>)";
  std::vector<std::string> names;
  for (std::size_t i = 0; i < 100; ++i) {
    names.push_back(std::to_string(1000 + i));
    for (std::size_t pair = 0; pair < i * 400; ++pair) names.back() += "\xD7\x90";
    texts.tables["line"] += (i == 0 ? "id\n" : "") + names.back() + "\n";
  }
  texts.tables["fact"] = "id\n" + names[3] + "\n";
  const test::BuiltCube built(texts);
  const Hierarchy& lines = built.cube().model.hierarchies.front();
  const auto read = [&] {
    std::vector<std::string> found;
    for (MemberId member = 1; member < lines.MemberCount(); ++member) {
      found.push_back(lines.Name(member));
    }
    return found;
  };
  EXPECT_TRUE(read() == names);
  EXPECT_TRUE(lines.Caption(100) == names.back());
  EXPECT_TRUE(lines.Caption(1) == names.front());
  std::this_thread::sleep_for(std::chrono::milliseconds(20));  // another time of modification
  Overwrite(built.path(), Bytes(std::size_t{8} << 20, std::byte{'x'}));
  const std::string said = test::DescriptionOf([&] { read(); });
  EXPECT_NE(said.find("was changed while it was read"), std::string::npos) << said;
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

TEST(DamagedCubeFile, AnyChangedByteAndAnyOtherLengthIsNoticed) {
  const Bytes good = SampleFile("aggregates.cub");
  const auto is_noticed = [](const Bytes& bytes) {
    return test::NumberOf([&] { ReadAll(bytes); }) == failure_number::kUnspecified;
  };
  EXPECT_FALSE(is_noticed(good));
  Bytes bytes = good;
  // Every byte of what is read when the file is opened, some of the blocks between.
  constexpr std::size_t kEnds = 1500;
  const auto step = [&](std::size_t at) { return at < kEnds || at + kEnds > good.size() ? 1 : 37; };
  for (std::size_t at = 0; at < good.size(); at += step(at)) {
    bytes[at] ^= static_cast<std::byte>(1u << at % 8);
    EXPECT_TRUE(is_noticed(bytes)) << "byte " << at;
    bytes[at] = good[at];
  }
  bytes.resize(good.size() + 8);
  EXPECT_TRUE(is_noticed(bytes));
  for (std::size_t length = 0; length < good.size(); ++length) {
    bytes.assign(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_TRUE(is_noticed(bytes)) << "length " << length;
  }
}

TEST(DamagedCubeFile, FailureSaysWhatIsWrong) {
  const auto said_with = [](std::size_t place, char letter) {
    Bytes bytes = SampleFile("ledger.cub");
    bytes[place] = static_cast<std::byte>(letter);
    return test::DescriptionOf([&] { CubeFile::Open(bytes, "sample.cub"); });
  };
  EXPECT_THAT(said_with(0, 'x'), testing::ContainsRegex("sample.cub.* is not a cube file"));
  EXPECT_THAT(said_with(8, 4), testing::ContainsRegex(
                                   "sample.cub.* format version 4, newer than this program reads"));
}

}  // namespace
}  // namespace vok::olap
