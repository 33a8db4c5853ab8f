// A record set as it stands in a file: its columns and rows, and the limits of reading one.
//
// Both readers give the record set as its last user saw it: changes that were not yet sent to a
// database are applied, deleted rows are gone.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "platform/locale.h"
#include "platform/value.h"

namespace vok::recordset {

/// What the values of a column are; each may be NULL as well, or a `CellError` that says why it
/// cannot be shown. The values of `kUnshown` are all that: bytes, record sets within the row.
enum class FieldType {
  kInteger,  ///< int32_t
  kNumber,   ///< double: fractions, currency, decimals, integers beyond 32 bits
  kBoolean,  ///< bool
  kDate,     ///< Date
  kText,     ///< std::string
  kUnshown
};

struct Column {
  std::string name;
  FieldType type = FieldType::kText;
  friend bool operator==(const Column&, const Column&) = default;
};

using Row = std::vector<Value>;

struct Rowset {
  std::vector<Column> columns;
  std::vector<Row> rows;  ///< a value per column each
  friend bool operator==(const Rowset&, const Rowset&) = default;
};

inline constexpr std::size_t kLargestFile = std::size_t{64} << 20;  // bytes
inline constexpr std::size_t kMostColumns = 1000;
inline constexpr std::size_t kMostValues = 4'000'000;  // rows times columns
inline constexpr std::size_t kDeepestElement = 16;     // of the XML form

/// How texts of one byte a letter are read that a file holds beside Unicode ones. Without a locale
/// they are ASCII.
struct CodePage {
  const Locale* locale = nullptr;
  int number = 0;  ///< such as 1255; 0: what the file names, else that of the user's language
};

/// Reads either form, told apart by the first bytes. `name` is the file's, for failures:
/// -2147467259 for bytes that are neither, are damaged, go beyond a limit or hold what is not
/// understood; never a part of the rows.
Rowset ReadRowset(std::span<const std::byte> bytes, const std::string& name,
                  const CodePage& code_page = {});

/// The XML form, as data programs read it; a value that cannot be shown is written as NULL. Failure
/// 5 for a text that XML cannot hold: control characters, bytes that are not UTF-8.
std::string WriteXmlRowset(const Rowset& rowset);

/// The two readers that `ReadRowset` chooses from.
Rowset ReadXmlRowset(std::span<const std::byte> bytes, const std::string& name);
Rowset ReadAdtg(std::span<const std::byte> bytes, const std::string& name,
                const CodePage& code_page);

[[noreturn]] void ThrowUnreadable(const std::string& name, const std::string& why);
/// Fails when so many values are too many.
void CheckSize(std::size_t rows, std::size_t columns, const std::string& name);

}  // namespace vok::recordset
