// Cube files that were cut short or changed: a failure, never a crash or another number.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

using Bytes = std::vector<std::byte>;

Bytes SampleFile() {
  const test::BuiltCube built(test::SampleLedger());
  std::ifstream stream(built.path(), std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(stream), {});
  Bytes bytes(text.size());
  std::memcpy(bytes.data(), text.data(), text.size());
  return bytes;
}

/// Everything that the file says, as one text.
std::string ReadAll(const Bytes& bytes) {
  std::string all;
  const auto file = CubeFile::Open(bytes, "sample.cub");
  for (const StoredCube& cube : file->cubes()) {
    all += cube.model.name + cube.model.caption;
    for (const Measure& measure : cube.model.measures) all += measure.name + measure.format_string;
    for (uint32_t index = 0; index < cube.model.hierarchies.size(); ++index) {
      const Hierarchy& hierarchy = cube.model.hierarchies[index];
      for (MemberId member = 0; member < hierarchy.MemberCount(); ++member) {
        all += hierarchy.UniqueName(member);
        all += hierarchy.Caption(member);
      }
      const auto leaf_level = static_cast<uint32_t>(hierarchy.levels().size() - 1);
      FactQuery query{{}, {}, FactQuery::Group{index, leaf_level}};
      for (uint32_t measure = 0; measure < cube.model.measures.size(); ++measure) {
        query.measures.push_back(measure);
      }
      for (const FactColumn& column : cube.facts->Read(query)) {
        all.append(reinterpret_cast<const char*>(column.values.data()), column.values.size() * 8);
        all.append(column.present.begin(), column.present.end());
      }
    }
  }
  return all;
}

TEST(DamagedCubeFile, AnyChangedByteIsNoticed) {
  const Bytes good = SampleFile();
  ASSERT_LT(good.size(), 20000u);
  ReadAll(good);
  Bytes bytes = good;
  for (std::size_t at = 0; at < good.size(); ++at) {
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

TEST(DamagedCubeFile, IsReadFromAnyAddress) {
  const Bytes good = SampleFile();
  Bytes shifted(good.size() + 1);
  std::memcpy(shifted.data() + 1, good.data(), good.size());
  const auto file = CubeFile::Open(std::span(shifted).subspan(1), "sample.cub");
  EXPECT_EQ(file->cubes()[0].model.name, "QEL");
}

TEST(DamagedCubeFile, FailureSaysWhatIsWrong) {
  const Bytes good = SampleFile();
  Bytes newer = good;
  newer[8] = std::byte{2};
  Bytes other = good;
  other[0] = std::byte{'x'};
  const Bytes cut(good.begin(), good.end() - 8);
  const struct {
    const Bytes& bytes;
    const char* words;
  } cases[] = {{newer, "format version 2, newer than this program reads"},
               {other, "is no cube file"},
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
