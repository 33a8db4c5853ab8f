// A cube file of any bytes: opening and reading it ends with an answer or a `Failure`.
//
// The checksums of the input are put right first, so that damage also reaches what lies after
// them.
#include <cstring>
#include <span>
#include <vector>

#include "providers/cube/olap/live/key_conditions.h"
#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/cube_file.h"
#include "providers/cube/olap/storage/format.h"
#include "tests/fuzz/fuzz.h"

namespace {

using namespace vok::olap;  // NOLINT: a program of one file

using Bytes = std::vector<std::byte>;

template <typename T>
T Load(const Bytes& bytes, std::size_t at) {
  T value;
  std::memcpy(&value, bytes.data() + at, sizeof(value));
  return value;
}

template <typename T>
void Store(Bytes& bytes, std::size_t at, const T& value) {
  std::memcpy(bytes.data() + at, &value, sizeof(value));
}

void RepairChecksums(Bytes& bytes) {
  if (bytes.size() < sizeof(FileHeader) + sizeof(FileFooter)) return;
  const std::size_t footer_at = bytes.size() - sizeof(FileFooter);
  auto footer = Load<FileFooter>(bytes, footer_at);
  const uint64_t directory = footer.directory_offset;
  if (directory > footer_at || footer.block_count > (footer_at - directory) / sizeof(BlockEntry)) {
    return;
  }
  const auto all = std::span<const std::byte>(bytes);
  for (uint64_t index = 0; index < footer.block_count; ++index) {
    const std::size_t at = directory + index * sizeof(BlockEntry);
    auto entry = Load<BlockEntry>(bytes, at);
    if (entry.offset > directory || entry.length > directory - entry.offset) continue;
    entry.checksum = Checksum(all.subspan(entry.offset, entry.length));
    Store(bytes, at, entry);
  }
  footer.directory_checksum =
      Checksum(all.subspan(directory, footer.block_count * sizeof(BlockEntry)));
  footer.file_length = bytes.size();
  Store(bytes, footer_at, footer);
  footer.checksum = Checksum(all.subspan(footer_at, offsetof(FileFooter, checksum)));
  Store(bytes, footer_at, footer);
}

void ReadAll(const StoredCube& cube) {
  FactQuery query;
  for (uint32_t index = 0; index < cube.model.measures.size(); ++index) {
    query.measures.push_back(index);
  }
  for (uint32_t index = 0; index < cube.model.hierarchies.size(); ++index) {
    const Hierarchy& hierarchy = cube.model.hierarchies[index];
    for (MemberId member = 0; member < hierarchy.MemberCount(); ++member) {
      hierarchy.UniqueName(member);
      hierarchy.Caption(member);
      hierarchy.Children(member);
    }
    query.leaves.assign(index + 1, {});
    query.leaves[index] = {{hierarchy.LeafCount() / 2, hierarchy.LeafCount()}};
    if (cube.live != nullptr) {
      ConditionOf(cube.live->hierarchies[index], query.leaves[index]);
      continue;
    }
    query.group = {index, static_cast<uint32_t>(hierarchy.levels().size() - 1)};
    cube.facts->Read(query);
    query.group = {0, 0};
    cube.facts->Read(query);
  }
}

void OpenAndReadAll(const Bytes& bytes) {
  Refuses([&] {
    const auto file = CubeFile::Open(bytes, "fuzzed.cub");
    for (const StoredCube& cube : file->cubes()) ReadAll(cube);
  });
}

}  // namespace

void FuzzOne(std::string_view input) {
  const auto given = std::as_bytes(std::span(input));
  Bytes bytes(given.begin(), given.end());
  OpenAndReadAll(bytes);
  RepairChecksums(bytes);
  OpenAndReadAll(bytes);
}
