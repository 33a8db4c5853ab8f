// Where the facts of a live cube are, and which keys of them lead to its members: what its file has
// instead of facts.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/table_question.h"
#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/bytes.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

/// One key of a fact. Several may lead to one leaf.
struct LiveKey {
  uint32_t leaf = 0;
  std::string text;  ///< as `JoinKeys` writes it where they are joined
};

/// How a fact finds its leaf in one hierarchy.
struct LiveKeys {
  std::vector<std::string> columns;  ///< of the fact table
  bool are_numbers = false;          ///< the columns' type
  bool are_joined = false;
  std::vector<LiveKey> keys;  ///< ascending by leaf; each leaf has one at least
};

struct LiveMeasure {
  std::string column;               ///< empty: the rows are counted
  bool is_binary_fraction = false;  ///< sums may vary in their last digits
};

/// A table that members were read from.
struct LiveTable {
  TableName name;
  std::vector<std::string> columns;
  std::string fingerprint;  ///< as `TableServer::Fingerprint` gave it
};

struct LiveSource {
  std::string address;  ///< without a login
  TableName fact_table;
  std::vector<LiveMeasure> measures;  ///< one for each measure of the cube
  std::vector<LiveKeys> hierarchies;  ///< one for each hierarchy of the cube
  std::vector<LiveTable> tables;
};

/// How a database server puts values together as the aggregator does; nothing: it cannot.
std::optional<Gathering> GatheringOf(Aggregator aggregator);

/// The section of the source. Each hierarchy's keys go into a block of their own, which `add_block`
/// gives a number.
ByteWriter LiveSection(const LiveSource& source,
                       const std::function<uint32_t(std::string_view)>& add_block);

/// Reads the section and checks that it fits the model.
LiveSource ReadLiveSection(BlockStore& blocks, ByteReader section, const CubeModel& model);

}  // namespace vok::olap
