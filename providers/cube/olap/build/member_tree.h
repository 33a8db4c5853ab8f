// The members of one hierarchy, gathered from the rows of a table.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/cube_writer.h"

namespace vok::olap {

/// A member is identified by its keys from the top; in a level with `uniqueMembers` one key stands
/// under one parent. Its name, caption and ordinal are those of the first row that has it. Members
/// follow the ordinal, then the key: numbers by size, texts by their UTF-8 bytes, NULL last.
class MemberTree {
 public:
  explicit MemberTree(const HierarchySchema& schema)
      : schema_(schema), levels_(schema.levels.size()) {}

  /// The columns that `Add` expects.
  std::vector<std::string> Columns() const;
  /// Returns the node of the row's leaf. Failures name the row's place.
  uint32_t Add(std::span<const Field> fields, const TableReader& reader);
  /// The hierarchy, and in `leaf_of_node` each leaf's number. `where` begins failure texts.
  NewHierarchy Finish(const std::string& dimension_name, const std::string& where,
                      std::vector<uint32_t>& leaf_of_node) const;

 private:
  struct Node {
    uint32_t parent = kNoMember;
    bool is_null = false;
    double number = 0;  // orders the keys of number levels, before the text
    std::string key;
    std::string name;
    std::string caption;
    std::string ordinal;
    bool has_ordinal = false;
  };
  /// One level's nodes: by parent and key, and by key alone.
  struct LevelNodes {
    std::unordered_map<std::string, uint32_t> by_path;
    std::unordered_map<std::string, uint32_t> by_key;
    std::vector<uint32_t> nodes;
  };

  Node ReadNode(const LevelSchema& level, std::span<const Field>& fields,
                const TableReader& reader) const;
  void ReadKey(const LevelSchema& level, const Field& field, const TableReader& reader,
               Node& node) const;
  uint32_t FindOrAdd(std::size_t level, Node node, const TableReader& reader);
  std::vector<uint32_t> Ordered(std::size_t level, const std::vector<uint32_t>& places) const;
  void CheckNames(const std::string& where) const;

  const HierarchySchema& schema_;
  std::vector<LevelNodes> levels_;
  std::vector<Node> nodes_;
};

}  // namespace vok::olap
