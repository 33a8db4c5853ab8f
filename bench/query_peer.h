// The same ledger in SQLite: what bench_query compares the cube with.
#pragma once

#include <string>

namespace vok::bench {

/// Which part of the ledger a question is about; movements only, twelve months, line by line.
enum class Slice { kLedger, kFile, kMoneySet };

/// Reads `folder`/entries.csv into a new database, each slice with a covering index of its own.
void LoadPeer(const std::string& folder, const std::string& database);

/// An opened database and the prepared question of each slice.
class Peer {
 public:
  explicit Peer(const std::string& database);
  ~Peer();
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  /// Runs the question to its last row; returns all numbers added up, so that answers compare.
  double Ask(Slice slice);

 private:
  struct Handles;
  Handles* handles_;
};

/// The question as SQL that any database understands which has `filter`.
std::string QuestionSql(Slice slice);

}  // namespace vok::bench
