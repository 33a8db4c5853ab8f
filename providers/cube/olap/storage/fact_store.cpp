#include "providers/cube/olap/storage/fact_store.h"

namespace vok::olap {

std::vector<std::vector<FactColumn>> FactStore::ReadAll(
    std::span<const FactQuery* const> queries) const {
  std::vector<std::vector<FactColumn>> answers;
  answers.reserve(queries.size());
  for (const FactQuery* query : queries) answers.push_back(Read(*query));
  return answers;
}

}  // namespace vok::olap
