// The schema of a cube that is made of a journal.
#pragma once

#include <string>

#include "cli/journal_guess.h"

namespace vok::cli {

/// The name of its one cube.
inline constexpr char kJournalCube[] = "BooksQEL";

/// A schema over the tables "journal", with the columns that were guessed, "dates" and "accounts".
/// Without a column of ledgers there is one ledger, the column "ledger" of the dates.
std::string SchemaOf(const JournalGuess& guess);

}  // namespace vok::cli
