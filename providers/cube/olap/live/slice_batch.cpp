#include "providers/cube/olap/live/slice_batch.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace vok::olap {
namespace {

using Ranges = std::vector<IdRange>;

/// What the questions of a batch have in common, as numbers.
using Key = std::vector<uint32_t>;

Key KeyOf(const FactQuery& question, const std::vector<Ranges>& leaves,
          std::optional<uint32_t> time) {
  Key key;
  if (question.group) key = {question.group->hierarchy + 1, question.group->level};
  const bool by_time = time && question.group && question.group->hierarchy == *time;
  for (uint32_t hierarchy = 0; hierarchy < leaves.size(); ++hierarchy) {
    if (hierarchy == time && !by_time) continue;
    key.push_back(static_cast<uint32_t>(leaves[hierarchy].size()));
    for (const IdRange& range : leaves[hierarchy]) key.insert(key.end(), {range.begin, range.end});
  }
  return key;
}

bool HoldsLeaf(const Ranges& ranges, uint32_t leaf) {
  return std::any_of(ranges.begin(), ranges.end(), [leaf](const IdRange& range) {
    return range.begin <= leaf && leaf < range.end;
  });
}

void Append(IdRange range, Ranges& ranges) {
  if (!ranges.empty() && ranges.back().end == range.begin) {
    ranges.back().end = range.end;
  } else {
    ranges.push_back(range);
  }
}

/// Cuts the leaves that the questions take wherever one of them begins or ends.
void CutIntoParts(const std::vector<Ranges>& taken, SliceBatch& batch, Ranges& all) {
  std::set<uint32_t> borders;
  for (const Ranges& ranges : taken) {
    for (const IdRange& range : ranges) borders.insert({range.begin, range.end});
  }
  std::map<std::vector<bool>, uint32_t> part_of;  // by the questions that take it
  for (auto border = borders.begin(); border != borders.end(); ++border) {
    const auto next = std::next(border);
    if (next == borders.end()) break;
    std::vector<bool> takers;
    takers.reserve(taken.size());
    for (const Ranges& ranges : taken) takers.push_back(HoldsLeaf(ranges, *border));
    if (std::find(takers.begin(), takers.end(), true) == takers.end()) continue;
    const auto [place, is_new] = part_of.emplace(takers, static_cast<uint32_t>(batch.parts.size()));
    if (is_new) batch.parts.emplace_back();
    Append({*border, *next}, batch.parts[place->second]);
    Append({*border, *next}, all);
  }
  batch.parts_of_question.resize(taken.size());
  for (const auto& [takers, part] : part_of) {
    for (std::size_t question = 0; question < takers.size(); ++question) {
      if (takers[question]) batch.parts_of_question[question].push_back(part);
    }
  }
  for (auto& parts : batch.parts_of_question) std::sort(parts.begin(), parts.end());
}

/// All leaves are as good as no restriction.
Ranges Unless(Ranges ranges, uint32_t leaf_count) {
  if (ranges.size() == 1 && ranges[0] == IdRange{0, leaf_count}) ranges.clear();
  return ranges;
}

void AddParts(std::span<const FactQuery* const> questions, const CubeModel& model,
              std::optional<uint32_t> time, SliceBatch& batch) {
  const bool by_time = !time || (batch.group && batch.group->hierarchy == *time);
  if (by_time) {
    batch.parts = {{}};
    batch.parts_of_question.assign(batch.questions.size(), {0});
    return;
  }
  const uint32_t leaf_count = model.hierarchies[*time].LeafCount();
  std::vector<Ranges> taken;
  for (const std::size_t index : batch.questions) {
    const Ranges& ranges = questions[index]->leaves[*time];
    taken.push_back(ranges.empty() ? Ranges{{0, leaf_count}} : ranges);
  }
  Ranges all;
  CutIntoParts(taken, batch, all);
  batch.leaves[*time] = Unless(std::move(all), leaf_count);
}

}  // namespace

std::vector<SliceBatch> BatchesOf(std::span<const FactQuery* const> questions,
                                  const CubeModel& model, std::optional<uint32_t> time) {
  std::vector<SliceBatch> batches;
  std::map<Key, std::size_t> place_of;
  for (std::size_t index = 0; index < questions.size(); ++index) {
    const FactQuery& question = *questions[index];
    std::vector<Ranges> leaves = question.leaves;
    leaves.resize(model.hierarchies.size());
    for (std::size_t hierarchy = 0; hierarchy < leaves.size(); ++hierarchy) {
      leaves[hierarchy] =
          Unless(std::move(leaves[hierarchy]), model.hierarchies[hierarchy].LeafCount());
    }
    const auto [place, is_new] = place_of.emplace(KeyOf(question, leaves, time), batches.size());
    if (is_new) batches.push_back({{}, {}, std::move(leaves), question.group, {}, {}});
    SliceBatch& batch = batches[place->second];
    batch.questions.push_back(index);
    batch.measures.insert(batch.measures.end(), question.measures.begin(), question.measures.end());
  }
  for (SliceBatch& batch : batches) {
    std::sort(batch.measures.begin(), batch.measures.end());
    batch.measures.erase(std::unique(batch.measures.begin(), batch.measures.end()),
                         batch.measures.end());
    AddParts(questions, model, time, batch);
  }
  return batches;
}

}  // namespace vok::olap
