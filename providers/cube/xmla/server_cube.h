// The structure of one cube as its server tells it: each list is asked for when it is first needed,
// once, and restricted to what is needed. Shared by all objects that show it.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/cube.h"
#include "providers/cube/xmla/server.h"
#include "providers/cube/xmla/text_arena.h"

namespace vok::xmla {

/// The members of one level in the server's order.
class MemberList {
 public:
  struct Member {
    std::string_view name;
    std::string_view caption;
    std::string_view unique_name;
    std::string_view parent;  ///< its unique name; "" at the top
  };

  void Add(std::string_view name, std::string_view caption, std::string_view unique_name,
           std::string_view parent);
  std::size_t size() const { return members_.size(); }
  const Member& operator[](std::size_t index) const { return members_[index]; }
  /// The member of that unique name; `size()` when there is none.
  std::size_t Find(std::string_view unique_name) const;

 private:
  TextArena texts_;
  std::deque<Member> members_;
  mutable std::unordered_map<std::string_view, std::size_t> index_;  // made by the first `Find`
};

struct LevelNode {
  std::string name;
  std::string unique_name;
  bool is_all = false;
  LevelTime time = LevelTime::kUntold;
  std::unique_ptr<const MemberList> members = nullptr;  ///< until they are asked for
};

struct HierarchyNode {
  std::string name;
  std::string unique_name;
  std::optional<std::vector<LevelNode>> levels;
};

struct DimensionNode {
  std::string name;
  std::string unique_name;
  std::optional<std::vector<HierarchyNode>> hierarchies;
};

/// Failures are those of `Server::Discover`. A list that could not be read is asked for again.
class ServerCube {
 public:
  ServerCube(std::shared_ptr<Server> server, std::string catalog, std::string name)
      : server_(std::move(server)), catalog_(std::move(catalog)), name_(std::move(name)) {}

  const std::string& name() const { return name_; }
  /// The measures first, then the cube's order.
  std::vector<DimensionNode>& Dimensions();
  std::vector<HierarchyNode>& Hierarchies(DimensionNode& dimension);
  /// From the top.
  std::vector<LevelNode>& Levels(HierarchyNode& hierarchy);
  const MemberList& Members(LevelNode& level);

 private:
  DiscoverRequest Request(const std::string& kind, const std::string& restriction,
                          const std::string& value) const;

  std::shared_ptr<Server> server_;
  std::string catalog_;
  std::string name_;
  std::optional<std::vector<DimensionNode>> dimensions_;
};

/// Names of the catalogs, and of the cubes of a catalog, in the server's order.
std::vector<std::string> ListCatalogs(Server& server);
std::vector<std::string> ListCubes(Server& server, const std::string& catalog);

}  // namespace vok::xmla
