// The same workbook by other programs: SQLite answers, libxlsxwriter writes in constant memory.
#pragma once

#include <cstddef>
#include <string>

namespace vok::bench {

/// Writes so many lines of `LineOf`, each pass the same, below one row of labels.
void WritePeer(const std::string& file, std::size_t lines, int passes);

/// Asks the database for the months of 2024 of its first ledger, line by line, and with a second
/// pass for the opening balances of January; writes the answers with the lines' captions.
void RunPeer(const std::string& database, const std::string& file, int passes);

}  // namespace vok::bench
