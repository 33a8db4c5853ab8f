// What `vokcubeq17-jet` prints.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/value.h"

namespace vok::jet {

struct TableRows {
  TableDefinition definition;
  std::vector<std::string> unread;       ///< columns whose kind is not read
  std::vector<std::vector<Value>> rows;  ///< a value per column
};

struct JetAnswer {
  std::string failure;  ///< why the file could not be read, after "it"; else empty
  std::vector<TableRows> tables;
};

/// Nothing for a text that is not a whole answer: the program did not get that far.
std::optional<JetAnswer> ParseAnswer(std::string_view json);

}  // namespace vok::jet
