#include "providers/cube/olap/live/live_facts.h"

#include <utility>

#include "platform/failure.h"
#include "platform/row_text.h"
#include "providers/cube/olap/live/answer_reader.h"
#include "providers/cube/olap/live/key_conditions.h"

namespace vok::olap {
namespace {

/// A longer list of keys is not sent where the answer tells them apart anyway.
constexpr std::size_t kMostListed = 10'000;

/// The first hierarchy of the first time dimension.
std::optional<uint32_t> TimeOf(const CubeModel& model) {
  for (const Dimension& dimension : model.dimensions) {
    if (dimension.is_time) return dimension.hierarchies.front();
  }
  return std::nullopt;
}

}  // namespace

LiveFacts::LiveFacts(std::shared_ptr<const StoredCube> cube, std::string file_name,
                     std::unique_ptr<TableServer> server)
    : cube_(std::move(cube)),
      file_name_(std::move(file_name)),
      time_(TimeOf(cube_->model)),
      server_(std::move(server)),
      leaves_(cube_->model.hierarchies.size()) {
  CheckColumns();
  CheckMembers();
}

void LiveFacts::CheckColumns() const {
  const LiveSource& live = *cube_->live;
  std::vector<std::string> wanted;
  for (const LiveKeys& keys : live.hierarchies) {
    wanted.insert(wanted.end(), keys.columns.begin(), keys.columns.end());
  }
  for (const LiveMeasure& measure : live.measures) {
    if (!measure.column.empty()) wanted.push_back(measure.column);
  }
  const std::vector<ServerColumn> columns = server_->Columns(live.fact_table);
  for (const std::string& name : wanted) {
    if (FindColumn(columns, name) != nullptr) continue;
    throw Failure(failure_number::kUnspecified,
                  server_->address() + ", table " + ShownName(live.fact_table) +
                      " has no column \"" + name + "\" any more, which " + file_name_ +
                      " was made with. Build that file anew with vokcube cube build --live");
  }
}

void LiveFacts::CheckMembers() const {
  for (const LiveTable& table : cube_->live->tables) {
    if (server_->Fingerprint(table.name, table.columns) == table.fingerprint) continue;
    throw Failure(failure_number::kUnspecified,
                  "The members of " + file_name_ + " are older than table " +
                      ShownName(table.name) + ". Run vokcube cube refresh " + file_name_ + ".");
  }
}

void LiveFacts::BeginQuery() {
  const std::lock_guard lock(mutex_);
  questions_ = 0;
}

std::vector<FactColumn> LiveFacts::Read(const FactQuery& query) const {
  const FactQuery* const one = &query;
  return std::move(ReadAll({&one, 1}).front());
}

std::vector<std::vector<FactColumn>> LiveFacts::ReadAll(
    std::span<const FactQuery* const> queries) const {
  const std::lock_guard lock(mutex_);
  std::vector<Columns> answers(queries.size());
  for (const SliceBatch& batch : BatchesOf(queries, cube_->model, time_)) {
    if (++questions_ > kMostQuestions) {
      throw Failure(failure_number::kNotSupported,
                    "The query would ask " + server_->address() + " more than " +
                        std::to_string(kMostQuestions) +
                        " questions, one for each of many cells. Build a file with the facts "
                        "(vokcube cube build without --live), or ask in another way");
    }
    Answer(queries, batch, answers);
  }
  return answers;
}

TableQuestion LiveFacts::QuestionOf(const SliceBatch& batch,
                                    std::vector<uint32_t>& expected) const {
  const LiveSource& live = *cube_->live;
  TableQuestion question{live.fact_table, {}};
  for (uint32_t hierarchy = 0; hierarchy < live.hierarchies.size(); ++hierarchy) {
    const LiveKeys& keys = live.hierarchies[hierarchy];
    const bool is_grouped = batch.group && batch.group->hierarchy == hierarchy;
    if (batch.leaves[hierarchy].empty()) {
      if (is_grouped) continue;
      const IdRange all{0, cube_->model.hierarchies[hierarchy].LeafCount()};
      question.expected.push_back(ConditionOf(keys, {&all, 1}));
      expected.push_back(hierarchy);
      continue;
    }
    KeyCondition condition = ConditionOf(keys, batch.leaves[hierarchy]);
    if (is_grouped && condition.keys.size() > kMostListed) continue;
    question.where.push_back(std::move(condition));
  }
  std::size_t groups = 1;
  if (batch.group) {
    const LiveKeys& keys = live.hierarchies[batch.group->hierarchy];
    for (const std::string& column : keys.columns) question.columns.push_back({column});
    groups = keys.keys.size();
  }
  for (const uint32_t measure : batch.measures) {
    question.columns.push_back(
        {live.measures[measure].column, *GatheringOf(cube_->model.measures[measure].aggregator)});
  }
  if (batch.parts.size() > 1) {
    for (const auto& part : batch.parts) {
      question.buckets.push_back(ConditionOf(live.hierarchies[*time_], part));
    }
  }
  question.most_rows = groups * batch.parts.size();
  return question;
}

void LiveFacts::Answer(std::span<const FactQuery* const> queries, const SliceBatch& batch,
                       std::vector<Columns>& answers) const {
  std::vector<uint32_t> expected;
  const TableQuestion question = QuestionOf(batch, expected);
  AnswerReader reader(
      *cube_, batch, expected, batch.group ? &LeavesOf(batch.group->hierarchy) : nullptr,
      [this](uint32_t hierarchy, const std::string& key) { FailForKey(hierarchy, key); });
  for (const std::size_t index : batch.questions) reader.AddQuestion(*queries[index]);
  const auto& check = queries[batch.questions.front()]->check;
  const std::string place = server_->address() + ", sums of table " + ShownName(question.table);
  const auto rows = server_->Read(question, &check);
  uint64_t taken = 0;
  for (std::string text; rows->Next(text);) {
    if (check) check();
    RowText parsed(std::exchange(text, {}), WidthOf(question), place, taken + 1);
    reader.Take(parsed);
    taken = parsed.row();
    if (taken <= question.most_rows) continue;
    throw Failure(failure_number::kUnspecified,
                  place + ": the server sent more rows than the " +
                      std::to_string(question.most_rows) +
                      " that the members make. Run vokcube cube refresh " + file_name_ + ".");
  }
  for (const std::size_t index : batch.questions) answers[index] = reader.TakeColumns();
}

const KeyMap& LiveFacts::LeavesOf(uint32_t hierarchy) const {
  std::optional<KeyMap>& map = leaves_[hierarchy];
  if (map) return *map;
  map.emplace();
  std::vector<uint32_t> leaves;
  for (const LiveKey& key : cube_->live->hierarchies[hierarchy].keys) {
    map->Insert(key.text, static_cast<uint32_t>(leaves.size()));
    leaves.push_back(key.leaf);
  }
  map->Finish(leaves);
  return *map;
}

void LiveFacts::FailForKey(uint32_t hierarchy, const std::string& key) const {
  const LiveSource& live = *cube_->live;
  std::string columns;
  for (const std::string& column : live.hierarchies[hierarchy].columns) {
    columns += (columns.empty() ? "" : ", ") + column;
  }
  throw Failure(failure_number::kUnspecified,
                server_->address() + ", table " + ShownName(live.fact_table) + ", column " +
                    columns + ": the key \"" + key + "\" has no member in " +
                    cube_->model.hierarchies[hierarchy].unique_name() + " of " + file_name_ +
                    ". Add it to the dimension's table and run vokcube cube refresh " + file_name_ +
                    ".");
}

}  // namespace vok::olap
