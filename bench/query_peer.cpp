#include "bench/query_peer.h"

#include <sqlite3.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <optional>

#include "bench/query_entries.h"

namespace vok::bench {
namespace {

void Check(sqlite3* database, int status) {
  if (status == SQLITE_OK || status == SQLITE_ROW || status == SQLITE_DONE) return;
  std::cerr << "sqlite: " << sqlite3_errmsg(database) << '\n';
  std::exit(1);
}

void Execute(sqlite3* database, const std::string& sql) {
  Check(database, sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr));
}

void Bind(sqlite3_stmt* insert, int parameter, const std::optional<int64_t>& number) {
  if (number) {
    sqlite3_bind_int64(insert, parameter, *number);
  } else {
    sqlite3_bind_null(insert, parameter);
  }
}

void InsertEntries(sqlite3* database, const std::string& folder) {
  sqlite3_stmt* insert = nullptr;
  Check(database, sqlite3_prepare_v2(database, "insert into entries values (?,?,?,?,?,?,?,?)", -1,
                                     &insert, nullptr));
  ReadEntries(folder, [&](const Entry& entry) {
    int parameter = 0;
    for (const std::optional<int64_t>& number :
         {std::optional(entry.date), std::optional(entry.line), std::optional(entry.file),
          std::optional(entry.opening), std::optional(entry.money), entry.cents, entry.units,
          std::optional(entry.ledger)}) {
      Bind(insert, ++parameter, number);
    }
    Check(database, sqlite3_step(insert));
    sqlite3_reset(insert);
  });
  sqlite3_finalize(insert);
}

}  // namespace

void LoadPeer(const std::string& folder, const std::string& path) {
  std::filesystem::remove(path);
  sqlite3* database = nullptr;
  Check(database, sqlite3_open(path.c_str(), &database));
  Execute(database, "pragma journal_mode=off; pragma synchronous=off; pragma cache_size=-2000000");
  Execute(database,
          "create table entries(date_id int, line_id int, file_id int, opening_key int,"
          " money_id int, amount int, units int, ledger_id int); begin");
  InsertEntries(database, folder);
  Execute(database, "commit");
  for (const char* slice : {"ledger_id", "file_id", "money_id"}) {
    const std::string column = slice;
    Execute(database, "create index by_" + column + " on entries(" + column +
                          ", opening_key, date_id, line_id, amount, units)");
  }
  Execute(database, "analyze");
  sqlite3_close(database);
}

std::string QuestionSql(Slice slice) {
  std::string columns;
  for (int month = 1; month <= 12; ++month) {
    const std::string first = std::to_string(20240000 + month * 100);
    const std::string when = " filter (where date_id between " + first + " and " + first + "+99)";
    columns += ", sum(units)" + when + ", sum(amount)" + when;
  }
  constexpr std::array<const char*, 3> kConditions = {"ledger_id = 1", "file_id = 1",
                                                      "money_id = 2"};
  return "select line_id" + columns + " from entries where " +
         kConditions[static_cast<std::size_t>(slice)] +
         " and opening_key = 1 and date_id between 20240100 and 20241299 group by line_id";
}

struct Peer::Handles {
  sqlite3* database = nullptr;
  std::map<Slice, sqlite3_stmt*> questions;
};

Peer::Peer(const std::string& path) : handles_(new Handles) {
  Check(handles_->database,
        sqlite3_open_v2(path.c_str(), &handles_->database, SQLITE_OPEN_READONLY, nullptr));
  Execute(handles_->database, "pragma mmap_size=100000000000");
}

Peer::~Peer() {
  for (const auto& [slice, question] : handles_->questions) sqlite3_finalize(question);
  sqlite3_close(handles_->database);
  delete handles_;
}

double Peer::Ask(Slice slice) {
  sqlite3_stmt*& question = handles_->questions[slice];
  if (question == nullptr) {
    Check(handles_->database, sqlite3_prepare_v2(handles_->database, QuestionSql(slice).c_str(), -1,
                                                 &question, nullptr));
  }
  int64_t units = 0;
  int64_t cents = 0;
  while (sqlite3_step(question) == SQLITE_ROW) {
    for (int month = 0; month < 12; ++month) {
      units += sqlite3_column_int64(question, 1 + 2 * month);
      cents += sqlite3_column_int64(question, 2 + 2 * month);
    }
  }
  sqlite3_reset(question);
  return static_cast<double>(units) + static_cast<double>(cents) / 100;
}

}  // namespace vok::bench
