#include "providers/cube/olap/storage/live_source.h"

#include "providers/cube/olap/storage/key_map.h"

namespace vok::olap {
namespace {

void PutTexts(ByteWriter& out, const std::vector<std::string>& texts) {
  out.Put(static_cast<uint32_t>(texts.size()));
  for (const std::string& text : texts) out.PutText(text);
}

void PutTable(ByteWriter& out, const TableName& table) {
  out.PutText(table.schema);
  out.PutText(table.name);
}

std::string KeyBlock(const std::vector<LiveKey>& keys) {
  ByteWriter block;
  block.Put(static_cast<uint32_t>(keys.size()));
  for (const LiveKey& key : keys) {
    block.Put(key.leaf);
    block.PutText(key.text);
  }
  return std::string(block.bytes());
}

class LiveSectionReader {
 public:
  LiveSectionReader(BlockStore& blocks, ByteReader section, const CubeModel& model)
      : blocks_(blocks), in_(section), model_(model) {}

  LiveSource Read() {
    LiveSource source;
    source.address = in_.GetText();
    source.fact_table = ReadTable();
    source.measures.resize(in_.GetCount(sizeof(uint32_t)));
    Require(source.measures.size() == model_.measures.size());
    for (const Measure& measure : model_.measures) {
      Require(GatheringOf(measure.aggregator).has_value());
    }
    for (LiveMeasure& measure : source.measures) {
      measure.column = in_.GetText();
      measure.is_binary_fraction = ReadFlag();
    }
    source.hierarchies.resize(in_.GetCount(sizeof(uint32_t)));
    Require(source.hierarchies.size() == model_.hierarchies.size());
    for (std::size_t index = 0; index < source.hierarchies.size(); ++index) {
      ReadHierarchy(source.hierarchies[index], model_.hierarchies[index].LeafCount());
    }
    source.tables.resize(in_.GetCount(sizeof(uint32_t)));
    for (LiveTable& table : source.tables) {
      table.name = ReadTable();
      table.columns = ReadTexts();
      table.fingerprint = in_.GetText();
    }
    return source;
  }

 private:
  void ReadHierarchy(LiveKeys& hierarchy, uint32_t leaf_count) {
    hierarchy.columns = ReadTexts();
    hierarchy.are_numbers = ReadFlag();
    hierarchy.are_joined = ReadFlag();
    const auto block = in_.Get<uint32_t>();
    Require(!hierarchy.columns.empty() && block < blocks_.count());
    Require(hierarchy.are_joined || hierarchy.columns.size() == 1);
    const HeldBlock held = blocks_.Read(block);
    ByteReader keys(held.bytes(), blocks_.file_name());
    hierarchy.keys.resize(keys.GetCount(2 * sizeof(uint32_t)));
    uint32_t next = 0;  // every leaf has a key
    for (LiveKey& key : hierarchy.keys) {
      key.leaf = keys.Get<uint32_t>();
      key.text = keys.GetText();
      Require(key.leaf <= next && key.leaf + 1 >= next);
      Require(!hierarchy.are_joined || SplitKeys(key.text).size() == hierarchy.columns.size());
      next = key.leaf + 1;
    }
    Require(next == leaf_count);
  }

  TableName ReadTable() {
    TableName table;
    table.schema = in_.GetText();
    table.name = in_.GetText();
    return table;
  }

  std::vector<std::string> ReadTexts() {
    std::vector<std::string> texts(in_.GetCount(sizeof(uint32_t)));
    for (std::string& text : texts) text = in_.GetText();
    return texts;
  }

  bool ReadFlag() {
    const auto flag = in_.Get<uint8_t>();
    Require(flag <= 1);
    return flag != 0;
  }

  void Require(bool condition) const {
    if (!condition) {
      throw DamagedCubeFile(blocks_.file_name(), "the description of its database is not valid");
    }
  }

  BlockStore& blocks_;
  ByteReader in_;
  const CubeModel& model_;
};

}  // namespace

std::optional<Gathering> GatheringOf(Aggregator aggregator) {
  switch (aggregator) {
    case Aggregator::kSum:
      return Gathering::kSum;
    case Aggregator::kCount:
      return Gathering::kCount;
    case Aggregator::kMin:
      return Gathering::kLeast;
    case Aggregator::kMax:
      return Gathering::kLargest;
    case Aggregator::kDistinctCount:
      break;
  }
  return std::nullopt;
}

ByteWriter LiveSection(const LiveSource& source,
                       const std::function<uint32_t(std::string_view)>& add_block) {
  ByteWriter out;
  out.PutText(source.address);
  PutTable(out, source.fact_table);
  out.Put(static_cast<uint32_t>(source.measures.size()));
  for (const LiveMeasure& measure : source.measures) {
    out.PutText(measure.column);
    out.Put(measure.is_binary_fraction);
  }
  out.Put(static_cast<uint32_t>(source.hierarchies.size()));
  for (const LiveKeys& hierarchy : source.hierarchies) {
    PutTexts(out, hierarchy.columns);
    out.Put(hierarchy.are_numbers);
    out.Put(hierarchy.are_joined);
    out.Put(add_block(KeyBlock(hierarchy.keys)));
  }
  out.Put(static_cast<uint32_t>(source.tables.size()));
  for (const LiveTable& table : source.tables) {
    PutTable(out, table.name);
    PutTexts(out, table.columns);
    out.PutText(table.fingerprint);
  }
  return out;
}

LiveSource ReadLiveSection(BlockStore& blocks, ByteReader section, const CubeModel& model) {
  return LiveSectionReader(blocks, section, model).Read();
}

}  // namespace vok::olap
