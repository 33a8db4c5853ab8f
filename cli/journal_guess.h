// Which columns of a journal hold what a cube needs, and how the journal is written.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "platform/locale.h"
#include "providers/cube/olap/build/csv_form.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::cli {

/// What a column of a journal can be.
enum class Role { kDate, kAccount, kAmount, kQuantity, kLedger, kText };
inline constexpr std::array<const char*, 6> kRoleNames = {"date",     "account", "amount",
                                                          "quantity", "ledger",  "text"};

/// Columns by their roles; "" where there is none.
using JournalColumns = std::array<std::string, kRoleNames.size()>;

/// How a journal is written, as far as the caller knows; "" where it is to be guessed.
struct KnownForm {
  std::string decimal;  ///< "." or ","
  std::string dates;
};

struct JournalGuess {
  JournalColumns columns;
  olap::CsvForm form;
  std::vector<std::string> other_amounts;  ///< columns of money that have no role
};

/// The likeliest of the separators in the first line of a CSV text.
char GuessSeparator(std::string_view text);

/// Reads all rows of the columns `header`. `given` are columns that the caller knows. Failure 9999
/// for a journal in which no date, account or amount is found; it says which columns there are; and
/// for one whose dates, amounts or quantities can be read in two ways.
/// `progress` is told how much is read, from 0 to 1.
JournalGuess GuessJournal(const Locale& locale, olap::TableParts& journal,
                          const std::vector<std::string>& header, const JournalColumns& given,
                          const KnownForm& known, const std::function<void(double)>& progress);

}  // namespace vok::cli
