// What the program says of its arguments: help, and what is wrong with them.
#pragma once

#include <CLI/CLI.hpp>

namespace vok::cli {

/// Ends the help of the program and of each command with an example and the exit statuses.
void AddExamples(CLI::App& app);

/// Prints what the arguments ask for, or what is wrong with them and which word was meant. Returns
/// the exit status: 0, or 2 for wrong arguments.
int Explain(CLI::App& app, const CLI::ParseError& error);

}  // namespace vok::cli
