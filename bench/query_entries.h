// The entries of a generated ledger, for those that the cube is compared with.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace vok::bench {

struct Entry {
  int64_t date = 0;  ///< 20240131
  int64_t line = 0;
  int64_t file = 0;
  int64_t opening = 0;
  int64_t money = 0;
  std::optional<int64_t> cents;
  std::optional<int64_t> units;
  int64_t ledger = 0;  ///< counted from 1, in the order of their first files
};

/// All of `folder`/entries.csv.
void ReadEntries(const std::string& folder, const std::function<void(const Entry&)>& use);

}  // namespace vok::bench
