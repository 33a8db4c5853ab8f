// What the command line has of the terminal and the machine that it runs in. The build takes the
// file of the operating system.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace vok::cli {

/// Returns what `program` returns for the arguments, in UTF-8 and without the program's name. What
/// it prints arrives byte by byte, and it may use objects of the system's other programs.
int RunProgram(int argc, char** argv, int (*program)(std::vector<std::string> arguments));

/// What a further thread of the program does: it, too, may use such objects there.
void WorkOnThread(const std::function<void()>& work);

/// Ends when these threads have ended, and serves their objects until then: some live on the first
/// thread.
void Await(std::vector<std::jthread>& threads);

/// From now on Ctrl-C, and where the system has them a request to end (SIGTERM) and a lost terminal
/// (SIGHUP), call `ask`, from a signal handler or another thread. When it answers false the program
/// ends, as it would have without this, and removes its temporary files where the system has time
/// for that. Signals that are ignored stay so.
void CatchInterrupts(bool (*ask)());

/// Bytes of memory that programs could still take; 0 where the system does not say.
uint64_t FreeMemory();

/// Whether standard error is a terminal, on which a line can be written over.
bool ErrorsAreShown();

}  // namespace vok::cli
