// Facts that stay in a database: each slice is a question to its server.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/table_server.h"
#include "providers/cube/olap/live/slice_batch.h"
#include "providers/cube/olap/storage/cube_file.h"
#include "providers/cube/olap/storage/fact_store.h"
#include "providers/cube/olap/storage/key_map.h"

namespace vok::olap {

/// Throughout its life it sees one state of the database, where the server can show one. It asks
/// one question after the other, whichever threads read.
class LiveFacts : public FactStore {
 public:
  /// Failure -2147467259 when a table of members has changed since the file was made, or the table
  /// of facts lacks a column. `cube` is a live one; `file_name` is used in failure texts.
  LiveFacts(std::shared_ptr<const StoredCube> cube, std::string file_name,
            std::unique_ptr<TableServer> server);

  /// A query begins: from here on `kMostQuestions` may be asked.
  void BeginQuery();

  std::vector<FactColumn> Read(const FactQuery& query) const override;
  std::vector<std::vector<FactColumn>> ReadAll(
      std::span<const FactQuery* const> queries) const override;
  bool AnswersTogether() const override { return true; }
  const FactRows* Rows() const override { return nullptr; }

  /// More than a query needs that asks for slices together.
  static constexpr uint32_t kMostQuestions = 1000;

 private:
  using Columns = std::vector<FactColumn>;

  void CheckColumns() const;
  void CheckMembers() const;
  void Answer(std::span<const FactQuery* const> queries, const SliceBatch& batch,
              std::vector<Columns>& answers) const;
  TableQuestion QuestionOf(const SliceBatch& batch, std::vector<uint32_t>& expected) const;
  /// What leads from keys to leaves of the hierarchy.
  const KeyMap& LeavesOf(uint32_t hierarchy) const;
  [[noreturn]] void FailForKey(uint32_t hierarchy, const std::string& key) const;

  std::shared_ptr<const StoredCube> cube_;
  std::string file_name_;
  std::optional<uint32_t> time_;
  std::unique_ptr<TableServer> server_;
  mutable std::mutex mutex_;  // of the server and what follows
  mutable uint32_t questions_ = 0;
  mutable std::vector<std::optional<KeyMap>> leaves_;
};

}  // namespace vok::olap
