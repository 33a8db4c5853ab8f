#include "providers/cube/xmla/server_cube.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "platform/cube.h"
#include "providers/cube/xmla/cell_value.h"

namespace vok::xmla {
namespace {

constexpr const char* kMeasureDimension = "2";  // MD_DIMTYPE_MEASURE
constexpr const char* kAllLevel = "1";          // MDLEVEL_TYPE_ALL

/// From the level's MDLEVEL_TYPE.
LevelTime TimeOfType(const std::string& type) {
  constexpr std::array<std::pair<const char*, LevelTime>, 6> kTimes = {
      {{"20", LevelTime::kYears},
       {"36", LevelTime::kOther},  // half-years
       {"68", LevelTime::kOther},  // quarters
       {"132", LevelTime::kMonths},
       {"260", LevelTime::kOther},  // weeks
       {"516", LevelTime::kDays}}};
  const auto* known = std::find_if(kTimes.begin(), kTimes.end(),
                                   [&](const auto& each) { return each.first == type; });
  return known == kTimes.end() ? LevelTime::kUntold : known->second;
}

/// A node and where it stands among its like.
template <typename Node>
struct Placed {
  double place;
  Node node;
};

/// Rows that give no place keep the server's order.
template <typename Node>
std::vector<Node> InOrder(std::vector<Placed<Node>> placed) {
  std::stable_sort(placed.begin(), placed.end(),
                   [](const auto& a, const auto& b) { return a.place < b.place; });
  std::vector<Node> nodes;
  nodes.reserve(placed.size());
  for (auto& each : placed) nodes.push_back(std::move(each.node));
  return nodes;
}

double Place(const std::string& text) {
  const double place = XmlNumber(text).value_or(0);
  return std::isnan(place) ? 0 : place;
}

}  // namespace

void MemberList::Add(std::string_view name, std::string_view caption, std::string_view unique_name,
                     std::string_view parent) {
  Member member;
  member.unique_name = texts_.Add(unique_name);
  member.name = texts_.Add(name);
  member.caption = caption == name ? member.name : texts_.Add(caption);
  const bool same_parent = !members_.empty() && members_.back().parent == parent;
  member.parent = same_parent ? members_.back().parent : texts_.Add(parent);
  members_.push_back(member);
}

std::size_t MemberList::Find(std::string_view unique_name) const {
  if (index_.empty()) {
    index_.reserve(members_.size());
    for (std::size_t i = 0; i < members_.size(); ++i) index_.emplace(members_[i].unique_name, i);
  }
  const auto found = index_.find(unique_name);
  return found == index_.end() ? members_.size() : found->second;
}

DiscoverRequest ServerCube::Request(const std::string& kind, const std::string& restriction,
                                    const std::string& value) const {
  DiscoverRequest request{kind, {{"CATALOG_NAME", catalog_}, {"CUBE_NAME", name_}}, catalog_};
  if (!restriction.empty()) request.restrictions.emplace_back(restriction, value);
  return request;
}

std::vector<DimensionNode>& ServerCube::Dimensions() {
  if (dimensions_) return *dimensions_;
  std::vector<Placed<DimensionNode>> placed;
  server_->Discover(
      Request("MDSCHEMA_DIMENSIONS", "", ""),
      {"DIMENSION_NAME", "DIMENSION_UNIQUE_NAME", "DIMENSION_ORDINAL", "DIMENSION_TYPE"},
      [&](const Row& row) {
        const double place = row[3] == kMeasureDimension ? -1 : Place(row[2]);
        placed.push_back({place, {row[0], row[1], std::nullopt}});
      });
  return dimensions_.emplace(InOrder(std::move(placed)));
}

std::vector<HierarchyNode>& ServerCube::Hierarchies(DimensionNode& dimension) {
  if (dimension.hierarchies) return *dimension.hierarchies;
  std::vector<Placed<HierarchyNode>> placed;
  server_->Discover(
      Request("MDSCHEMA_HIERARCHIES", "DIMENSION_UNIQUE_NAME", dimension.unique_name),
      {"HIERARCHY_NAME", "HIERARCHY_UNIQUE_NAME", "HIERARCHY_ORDINAL"}, [&](const Row& row) {
        // Some servers put the dimension before the name, some give none.
        placed.push_back(
            {Place(row[2]), {cube_text::LastPart(row[1], row[0]), row[1], std::nullopt}});
      });
  return dimension.hierarchies.emplace(InOrder(std::move(placed)));
}

std::vector<LevelNode>& ServerCube::Levels(HierarchyNode& hierarchy) {
  if (hierarchy.levels) return *hierarchy.levels;
  std::vector<Placed<LevelNode>> placed;
  server_->Discover(Request("MDSCHEMA_LEVELS", "HIERARCHY_UNIQUE_NAME", hierarchy.unique_name),
                    {"LEVEL_NAME", "LEVEL_UNIQUE_NAME", "LEVEL_NUMBER", "LEVEL_TYPE"},
                    [&](const Row& row) {
                      placed.push_back({Place(row[2]),
                                        {row[0], row[1], row[3] == kAllLevel, TimeOfType(row[3])}});
                    });
  return hierarchy.levels.emplace(InOrder(std::move(placed)));
}

const MemberList& ServerCube::Members(LevelNode& level) {
  if (level.members) return *level.members;
  auto members = std::make_unique<MemberList>();
  DiscoverRequest request = Request("MDSCHEMA_MEMBERS", "LEVEL_UNIQUE_NAME", level.unique_name);
  request.most_rows = kMaxLevelMembers;
  // The rows come in the order of the level. MEMBER_ORDINAL says nothing of it: servers give 0.
  server_->Discover(request,
                    {"MEMBER_NAME", "MEMBER_CAPTION", "MEMBER_UNIQUE_NAME", "PARENT_UNIQUE_NAME"},
                    [&](const Row& row) { members->Add(row[0], row[1], row[2], row[3]); });
  level.members = std::move(members);
  return *level.members;
}

std::vector<std::string> ListCatalogs(Server& server) {
  std::vector<std::string> names;
  server.Discover({"DBSCHEMA_CATALOGS", {}, ""}, {"CATALOG_NAME"},
                  [&](const Row& row) { names.push_back(row[0]); });
  return names;
}

std::vector<std::string> ListCubes(Server& server, const std::string& catalog) {
  std::vector<std::string> names;
  server.Discover({"MDSCHEMA_CUBES", {{"CATALOG_NAME", catalog}}, catalog}, {"CUBE_NAME"},
                  [&](const Row& row) {
                    // A server's own cubes, such as one for each dimension.
                    if (!row[0].starts_with('$')) names.push_back(row[0]);
                  });
  return names;
}

}  // namespace vok::xmla
