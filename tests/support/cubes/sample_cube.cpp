#include "tests/support/cubes/sample_cube.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "native.h"

namespace vok::test {

CubeTexts SampleTexts(const std::string& name) {
  CubeTexts texts;
  for (const auto& entry : std::filesystem::directory_iterator(VOK_SAMPLE_CUBES + ('/' + name))) {
    std::ifstream file(entry.path(), std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(file), {});
    const bool is_schema = entry.path().extension() == ".xml";
    (is_schema ? texts.schema : texts.tables[entry.path().stem().string()]) = std::move(text);
  }
  return texts;
}

olap::BuildReport BuildInto(const TemporaryFolder& folder, const CubeTexts& texts) {
  const auto write = [&](const std::string& name, const std::string& text) {
    std::ofstream(folder.File(name), std::ios::binary) << text;
  };
  write("schema.xml", texts.schema);
  for (const auto& [name, text] : texts.tables) write(name + ".csv", text);
  NativeFiles files;
  return olap::BuildCubeFile(files, NativeLocale("en_US"),
                             {folder.File("schema.xml"), folder.path(), folder.File("sample.cub")},
                             {});
}

BuiltCube::BuiltCube(const CubeTexts& texts)
    : report_(BuildInto(folder_, texts)), file_(olap::CubeFile::Open(NativeFiles(), path())) {}

}  // namespace vok::test
