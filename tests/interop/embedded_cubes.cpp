#include "tests/interop/embedded_cubes.h"

#include <filesystem>
#include <map>
#include <vector>

#include "platform/failure.h"
#include "providers/olap/build/build_cube.h"
#include "providers/olap/cube_services.h"
#include "providers/posix/icu_locale.h"
#include "providers/posix/posix_files.h"

namespace vok::interop {
namespace {

std::vector<Tuple> ReadAxis(const CellsetAxis& axis) {
  std::vector<Tuple> tuples(axis.PositionCount());
  for (std::size_t position = 0; position < tuples.size(); ++position) {
    for (std::size_t i = 0; i < axis.MembersPerPosition(); ++i) {
      AxisMember member = axis.MemberAt(position, i);
      tuples[position].push_back({member.unique_name, member.caption, member.level_name});
    }
  }
  return tuples;
}

Answer Read(const Cellset& cellset) {
  Answer answer;
  for (std::size_t i = 0; i < cellset.AxisCount(); ++i) {
    answer.axes.push_back(ReadAxis(cellset.AxisAt(i)));
  }
  answer.SizeCells();
  for (std::size_t i = 0; i < answer.cells.size(); ++i) {
    answer.cells[i] = cellset.Cell(i);
    answer.formatted[i] = cellset.FormattedCell(i);
  }
  return answer;
}

}  // namespace

struct EmbeddedCubes::Opened {
  PosixFiles files;
  IcuLocale locale{"en_US"};
  olap::OlapCubeServices services{files, locale};
  std::map<std::string, std::unique_ptr<CubeConnection>> catalogs;
};

EmbeddedCubes::EmbeddedCubes(const std::string& schemas, const std::string& tables,
                             const std::string& folder)
    : opened_(std::make_unique<Opened>()) {
  for (const auto& schema : std::filesystem::directory_iterator(schemas)) {
    if (schema.path().extension() != ".xml") continue;
    const std::string name = schema.path().stem().string();
    const std::string output = folder + '/' + name + ".cub";
    olap::BuildCubeFile(opened_->files, opened_->locale, {schema.path().string(), tables, output},
                        {});
    auto connection = opened_->services.NewConnection();
    connection->Open("Provider=MSOLAP;Data Source=" + output, "", "", kUnspecifiedOptions);
    opened_->catalogs.emplace(name, std::move(connection));
  }
}

EmbeddedCubes::~EmbeddedCubes() = default;

Answer EmbeddedCubes::Run(const std::string& catalog, const std::string& mdx) const {
  Answer answer;
  try {
    const auto cellset = opened_->services.NewCellset();
    cellset->SetActiveConnection(*opened_->catalogs.at(catalog));
    cellset->SetSource(mdx);
    cellset->Open();
    return Read(*cellset);
  } catch (const Failure& failure) {
    answer.failure = failure.description();
  }
  return answer;
}

}  // namespace vok::interop
