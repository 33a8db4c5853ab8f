#include "providers/olap/build/formula_check.h"

#include <memory>
#include <vector>

#include "platform/failure.h"
#include "providers/olap/mdx/declared_members.h"
#include "providers/olap/storage/cube_file.h"

namespace vok::olap {
namespace {

/// A file in memory.
class MemoryFile : public FileReplacement {
 public:
  explicit MemoryFile(std::vector<std::byte>& bytes) : bytes_(bytes) {}
  void Write(std::span<const std::byte> bytes) override {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  }
  void Commit() override {}

 private:
  std::vector<std::byte>& bytes_;
};

/// The cube without any facts.
std::vector<std::byte> EmptyCube(const NewCube& cube) {
  NewFacts facts;
  for (uint32_t hierarchy = 0; hierarchy < cube.hierarchies.size(); ++hierarchy) {
    facts.keys.push_back({hierarchy, {}});
  }
  facts.values.emplace_back();
  facts.value_of_measure.resize(cube.measures.size());
  std::vector<std::byte> bytes;
  CubeWriter writer(std::make_unique<MemoryFile>(bytes));
  writer.Begin(cube, facts);
  writer.End();
  writer.Finish();
  return bytes;
}

}  // namespace

void CheckFormulas(const Locale& locale, const CubeSchema& schema, const NewCube& cube) {
  const std::vector<std::byte> bytes = EmptyCube(cube);
  const auto file = CubeFile::Open(bytes, schema.name);
  const CubeView view(std::shared_ptr<const StoredCube>(file, &file->cubes()[0]), locale);
  std::vector<std::string> places;
  for (const CalculatedMemberSchema& member : schema.calculated) places.push_back(member.place);
  try {
    Query query;
    AddDeclaredMembers(view, query, places);
  } catch (const Failure& failure) {
    throw Failure(failure_number::kUnspecified, failure.description());
  }
}

}  // namespace vok::olap
