// What the command line has of the terminal that it runs in. The build takes the file of the
// operating system.
#pragma once

#include <string>
#include <vector>

namespace vok::cli {

/// The program's arguments in UTF-8, without its name. Also sees to it that what is printed arrives
/// byte by byte, as UTF-8.
std::vector<std::string> Arguments(int argc, char** argv);

/// From now on Ctrl-C, and where the system has them a request to end (SIGTERM) and a lost terminal
/// (SIGHUP), call `ask`, from a signal handler or another thread. When it answers false the program
/// ends, as it would have without this, and removes its temporary files where the system has time
/// for that. Signals that are ignored stay so.
void CatchInterrupts(bool (*ask)());

/// Whether standard error is a terminal, on which a line can be written over.
bool ErrorsAreShown();

}  // namespace vok::cli
