#include "providers/cube/olap/build/refresh_cube.h"

#include <algorithm>
#include <set>
#include <utility>

#include "providers/cube/olap/build/cube_maker.h"
#include "providers/cube/olap/build/decimal.h"
#include "providers/cube/olap/build/live_build.h"
#include "providers/cube/olap/build/member_tree.h"
#include "providers/cube/olap/build/server_tables.h"
#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/cube_file.h"

namespace vok::olap {
namespace {

constexpr const char* kBuildAll = ". Build the whole cube: vokcube cube build";

class NoParts : public TableParts {
 public:
  std::unique_ptr<TableReader> Next() override { return nullptr; }
  double Done() const override { return 1; }
};

/// A source whose fact table has the rows of some ranges alone.
class SomeFacts : public TableSource {
 public:
  SomeFacts(const TableSource& source, const TableName& table, std::string key_column,
            std::vector<KeyRange> ranges)
      : source_(source),
        table_(table),
        key_column_(std::move(key_column)),
        ranges_(std::move(ranges)) {}

  std::unique_ptr<TableParts> OpenParts(const TableName& table,
                                        const std::vector<std::string>& columns) const override {
    return Ask(RowsOf(table, columns));
  }
  std::unique_ptr<TableParts> Ask(const TableQuestion& question) const override {
    if (question.table != table_) return source_.Ask(question);
    if (ranges_.empty()) return std::make_unique<NoParts>();
    TableQuestion narrowed = question;
    narrowed.where.push_back({{key_column_}, ranges_});
    return source_.Ask(narrowed);
  }
  void CheckUnchanged() const override { source_.CheckUnchanged(); }

 private:
  const TableSource& source_;
  const TableName& table_;
  std::string key_column_;
  std::vector<KeyRange> ranges_;
};

/// The totals of each leaf of time as the server has them now, of facts with a known key.
std::vector<PeriodTotals> AskTotals(const TableSource& source, const CubeSchema& schema,
                                    const LoadedHierarchy& time) {
  const FactPlan plan = PlanFacts(schema, {}, true);
  TableQuestion question{schema.fact_table, plan.columns};
  question.columns.push_back({time.fact_columns[0]});
  PeriodTotals none{0, std::vector<std::optional<ExactSum>>(plan.values.size(), ExactSum())};
  std::vector<PeriodTotals> all(time.members.LeafCount(), none);
  const auto parts = source.Ask(question);
  while (const auto part = parts->Next()) {
    while (part->Next()) {
      const auto fields = part->Fields();
      const uint32_t leaf = time.leaves.Find(fields.back().text);
      if (leaf == KeyMap::kAbsent) continue;
      all[leaf].facts += static_cast<uint64_t>(ParseDecimal(fields[*plan.count_place].text).number);
      for (std::size_t index = 0; index < plan.values.size(); ++index) {
        const Field& field = fields[plan.values[index].place];
        const Decimal sum = ParseDecimal(field.is_null ? "0" : field.text);
        auto& total = all[leaf].sums[index];
        if (sum.fit != NumberFit::kDecimal) total.reset();
        AddTo(total, sum.number, sum.scale);
      }
    }
  }
  return all;
}

/// Sums are compared where both are exact.
bool Differ(const PeriodTotals& before, const PeriodTotals& now) {
  if (before.facts != now.facts) return true;
  for (std::size_t index = 0; index < now.sums.size(); ++index) {
    const auto& sum = before.sums[index];
    if (sum && (!now.sums[index] || !(*sum == *now.sums[index]))) return true;
  }
  return false;
}

class CubeRefresh {
 public:
  CubeRefresh(const RefreshRequest& request, const TableSource& source, const StoredCube& stored,
              const CubeRecord& record, const CubeSchema& schema, const Progress& progress)
      : request_(request),
        source_(source),
        stored_(stored),
        record_(record),
        schema_(schema),
        progress_(progress) {
    for (const DimensionSchema& dimension : schema.dimensions) {
      for (const HierarchySchema& hierarchy : dimension.hierarchies) {
        schemas_.push_back(&hierarchy);
      }
    }
    CheckRecord();
    kept_.rows = stored.facts->Rows();
    kept_.time = record.time;
    kept_.unknown = [this](uint32_t hierarchy, uint32_t leaf) { return Unknown(hierarchy, leaf); };
  }

  void Run(CubeMaker& maker) {
    LoadTables();
    ChooseMonths();
    const SomeFacts facts(source_, schema_.fact_table, time().fact_columns[0], ranges_);
    LoadMembersOfFacts(facts);
    LoadOptions options = maker.Options();
    options.totals_of = record_.time;
    options.kept = &kept_;
    CubeOrigin origin{source_.AddressToKeep(), request_.now};
    maker.Add(schema_, facts, std::move(hierarchies_), options, progress_,
              NewOrigin{origin, {record_.schema}});
    maker.report().cubes.back().months.assign(months_.begin(), months_.end());
  }

 private:
  LoadedHierarchy& time() { return hierarchies_[record_.time]; }

  void CheckRecord() const {
    const auto& there = stored_.model.hierarchies;
    const auto require = [this](bool condition) {
      if (!condition) throw DamagedCubeFile(path(), "the record of its origin is not valid");
    };
    if (record_.time == kNoTime) {
      throw BadInput(path(),
                     "its schema has no hierarchy of years and months (levelType) with a "
                     "table of its own, so its facts cannot be read by months" +
                         std::string(kBuildAll));
    }
    require(record_.hierarchies.size() == there.size() && schemas_.size() == there.size() &&
            record_.time < there.size());
    for (std::size_t index = 0; index < there.size(); ++index) {
      const RecordedRows& rows = record_.hierarchies[index];
      require(rows.leaves.empty() || rows.width == WidthOf(*schemas_[index]));
      require(std::all_of(rows.leaves.begin(), rows.leaves.end(),
                          [&](uint32_t leaf) { return leaf < there[index].LeafCount(); }));
    }
    const std::size_t values = stored_.facts->Rows()->Formats().size();
    require(record_.totals.size() == there[record_.time].LeafCount());
    for (const PeriodTotals& totals : record_.totals) require(totals.sums.size() == values);
    for (const MeasureSchema& measure : schema_.measures) {
      if (measure.aggregator != Aggregator::kDistinctCount) continue;
      throw BadInput(path(), "measure " + Quoted(measure.name) +
                                 " counts different values, which the file does not hold" +
                                 kBuildAll);
    }
  }

  static std::size_t WidthOf(const HierarchySchema& hierarchy) {
    if (!hierarchy.table.name.empty()) return 1;
    return MemberTree(hierarchy).Columns().size() + hierarchy.levels.size();
  }

  const std::string& path() const { return request_.build.output_path; }

  template <typename Do>
  void ForHierarchies(bool with_table, const Do& load) {
    std::size_t index = 0;
    for (const DimensionSchema& dimension : schema_.dimensions) {
      for (const HierarchySchema& hierarchy : dimension.hierarchies) {
        if (hierarchy.table.name.empty() != with_table) {
          progress_("reading dimension " + dimension.name, kDimensions, 0);
          hierarchies_[index] = load(dimension, hierarchy, index);
        }
        ++index;
      }
    }
  }

  void LoadTables() {
    hierarchies_.resize(record_.hierarchies.size());
    kept_.leaves.resize(hierarchies_.size());
    ForHierarchies(true, [this](const auto& dimension, const auto& hierarchy, std::size_t index) {
      auto loaded = LoadHierarchy(source_, schema_, dimension, hierarchy, {true});
      kept_.leaves[index] = LeavesNow(index, loaded);
      return loaded;
    });
  }

  void LoadMembersOfFacts(const TableSource& facts) {
    ForHierarchies(false, [&](const auto& dimension, const auto& hierarchy, std::size_t index) {
      kept_.leaves[index].resize(stored_.model.hierarchies[index].LeafCount());
      HierarchyOptions options{true, &record_.hierarchies[index]};
      options.used = UsedLeaves(kept_, static_cast<uint32_t>(index));
      auto loaded = LoadHierarchy(facts, schema_, dimension, hierarchy, options);
      kept_.leaves[index] = LeavesNow(index, loaded);
      return loaded;
    });
  }

  /// Of each leaf in the file the one that its keys lead to now, when that is one.
  std::vector<uint32_t> LeavesNow(std::size_t index, const LoadedHierarchy& loaded) const {
    const RecordedRows& rows = record_.hierarchies[index];
    const std::size_t key_fields = loaded.fact_columns.size();
    std::vector<std::set<uint32_t>> found(stored_.model.hierarchies[index].LeafCount());
    std::vector<Field> key(key_fields);
    std::string joined;
    for (std::size_t row = 0; row < rows.leaves.size(); ++row) {
      const auto* field = rows.fields.data() + (row + 1) * rows.width - key_fields;
      for (Field& each : key) {
        each = {field->has_value() ? std::string_view(**field) : "", !field->has_value()};
        ++field;
      }
      if (loaded.has_table) {
        joined = key[0].text;
      } else {
        JoinKeys(key, joined);
      }
      const uint32_t leaf = loaded.leaves.Find(joined);
      if (leaf != KeyMap::kAbsent) found[rows.leaves[row]].insert(leaf);
    }
    std::vector<uint32_t> leaves;
    leaves.reserve(found.size());
    for (const auto& each : found) {
      leaves.push_back(each.size() == 1 ? *each.begin() : KeptFacts::kUnknown);
    }
    return leaves;
  }

  void ChooseMonths() {
    const auto months = MonthsOfLeaves(time().members, request_.month_of);
    const MonthChoice& choice = request_.months;
    kept_.totals = TotalsNow();
    if (choice.IsAutomatic()) {
      progress_("comparing the months of " + schema_.name, kDimensions, 0);
      const auto now = AskTotals(source_, schema_, time());
      for (std::size_t leaf = 0; leaf < months.size(); ++leaf) {
        if (Differ(kept_.totals[leaf], now[leaf])) months_.insert(months[leaf]);
      }
    } else {
      for (const int month : months) {
        if (choice.Has(month)) months_.insert(month);
      }
      CheckChoice();
    }
    std::vector<bool> wanted;
    for (std::size_t leaf = 0; leaf < months.size(); ++leaf) {
      wanted.push_back(months_.count(months[leaf]) > 0);
      if (wanted[leaf]) kept_.totals[leaf] = NoTotals();
    }
    for (uint32_t& leaf : kept_.leaves[record_.time]) {
      if (leaf != KeptFacts::kUnknown && wanted[leaf]) leaf = KeptFacts::kReadAnew;
    }
    ranges_ = RangesOf(time().rows, wanted, choice.since.has_value(), TableOfTime());
  }

  void CheckChoice() const {
    const MonthChoice& choice = request_.months;
    for (const int month : choice.months) {
      if (months_.count(month) > 0) continue;
      throw BadInput("table " + Quoted(TableOfTime()), "has no dates of " + ShownMonth(month));
    }
    if (months_.empty()) {
      throw BadInput("table " + Quoted(TableOfTime()),
                     "has no dates from " + ShownMonth(*choice.since) + " on");
    }
  }

  PeriodTotals NoTotals() const {
    const std::size_t values = stored_.facts->Rows()->Formats().size();
    return {0, std::vector<std::optional<ExactSum>>(values, ExactSum())};
  }

  /// Those of the file, by the leaves that are there now.
  std::vector<PeriodTotals> TotalsNow() {
    std::vector<PeriodTotals> totals(time().members.LeafCount(), NoTotals());
    const auto& leaves = kept_.leaves[record_.time];
    for (std::size_t old = 0; old < leaves.size(); ++old) {
      if (leaves[old] == KeptFacts::kUnknown) continue;
      PeriodTotals& total = totals[leaves[old]];
      total.facts += record_.totals[old].facts;
      for (std::size_t index = 0; index < total.sums.size(); ++index) {
        const auto& sum = record_.totals[old].sums[index];
        if (!sum) total.sums[index].reset();
        if (sum) AddTo(total.sums[index], sum->number, sum->scale);
      }
    }
    return totals;
  }

  std::string TableOfTime() const { return ShownName(schemas_[record_.time]->table); }

  Failure Unknown(uint32_t hierarchy, uint32_t leaf) const {
    const Hierarchy& there = stored_.model.hierarchies[hierarchy];
    const MemberId member = there.levels().back().members.begin + leaf;
    return BadInput(path(), "there are facts of " + there.UniqueName(member) +
                                " in other months, but its keys are not in the dimension's table "
                                "any more, or lead to several members now" +
                                kBuildAll);
  }

  const RefreshRequest& request_;
  const TableSource& source_;
  const StoredCube& stored_;
  const CubeRecord& record_;
  const CubeSchema& schema_;
  const Progress& progress_;
  std::vector<const HierarchySchema*> schemas_;  // of all dimensions
  std::vector<LoadedHierarchy> hierarchies_;
  KeptFacts kept_;
  std::set<int> months_;
  std::vector<KeyRange> ranges_;
};

CubeSchema SchemaOf(const Locale& locale, const std::string& path, const StoredCube& stored,
                    const CubeRecord& record) {
  const std::string name = path + ", its schema";
  for (CubeSchema& schema : ReadSchema(locale, name, record.schema)) {
    if (schema.name == stored.model.name) return std::move(schema);
  }
  throw DamagedCubeFile(path, "the recorded schema has no cube of that name");
}

void RequireOrigins(const CubeFile& file, const std::string& path) {
  for (const StoredCube& stored : file.cubes()) {
    if (stored.origin) continue;
    throw BadInput(
        path,
        "does not tell which database server its tables are on: it was built from files, "
        "by an older program, or with --no-source" +
            std::string(kBuildAll));
  }
}

/// A live cube's file has members alone.
BuildReport RefreshMembers(Files& files, const Locale& locale, const RefreshRequest& request,
                           const TellStep& progress) {
  if (request.is_chosen) {
    throw Failure(failure_number::kInvalidCall,
                  request.build.output_path +
                      " is a live cube, whose facts are not in the file: a refresh reads its "
                      "members. Leave out --since and --months");
  }
  BuildRequest build = request.build;
  build.live = true;
  CubeMaker maker(files, locale, build, progress);
  const auto file = CubeFile::Open(files, build.output_path);
  RequireOrigins(*file, build.output_path);
  const std::string address =
      build.data_path.empty() ? file->cubes().front().origin->address : build.data_path;
  const std::shared_ptr<TableServer> server = OpenServerOf(build, address);
  std::vector<CubeSchema> schemas;
  std::vector<NewOrigin> origins;
  for (const StoredCube& stored : file->cubes()) {
    const HeldBlock bytes = file->RecordOf(*stored.origin);
    const CubeRecord record = ReadRecord(bytes.bytes(), build.output_path);
    schemas.push_back(SchemaOf(locale, build.output_path, stored, record));
    origins.push_back({{server->AddressToKeep(), request.now}, {record.schema}});
  }
  const auto source = OpenLiveTables(server, schemas);
  for (std::size_t index = 0; index < schemas.size(); ++index) {
    const Progress of_cube = maker.ProgressOf(schemas.size());
    maker.AddLive(schemas[index], *server, LoadHierarchies(*source, schemas[index], false, of_cube),
                  of_cube, std::move(origins[index]));
  }
  return maker.Finish(*source);
}

bool IsLive(const Files& files, const std::string& path) {
  const auto file = CubeFile::Open(files, path);
  return !file->cubes().empty() && file->cubes().front().live != nullptr;
}

}  // namespace

BuildReport RefreshCubeFile(Files& files, const Locale& locale, const RefreshRequest& request,
                            const std::function<void(const BuildStep&)>& progress) {
  const BuildRequest& build = request.build;
  if (IsLive(files, build.output_path)) return RefreshMembers(files, locale, request, progress);
  if (!request.is_chosen) {
    throw Failure(failure_number::kInvalidCall,
                  "Say which months of " + build.output_path +
                      " are to be read anew: --since 2024-11, --since auto or --months 2024-11");
  }
  // Claimed before the old file is read: nobody else replaces it meanwhile.
  CubeMaker maker(files, locale, build, progress);
  const auto file = CubeFile::Open(files, build.output_path);
  RequireOrigins(*file, build.output_path);
  const std::string& recorded = file->cubes().front().origin->address;
  const auto source =
      OpenServerTables(OpenServerOf(build, build.data_path.empty() ? recorded : build.data_path));
  for (const StoredCube& stored : file->cubes()) {
    const HeldBlock bytes = file->RecordOf(*stored.origin);
    const CubeRecord record = ReadRecord(bytes.bytes(), build.output_path);
    const CubeSchema schema = SchemaOf(locale, build.output_path, stored, record);
    const Progress of_cube = maker.ProgressOf(file->cubes().size());
    CubeRefresh(request, *source, stored, record, schema, of_cube).Run(maker);
  }
  return maker.Finish(*source);
}

}  // namespace vok::olap
