#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <string>

#include "cli/terminal.h"
#include "system/posix/temporary_file.h"

namespace vok::cli {
namespace {

bool (*ask_to_stop)() = nullptr;

void Interrupt(int signal) {
  const int error = errno;
  if (!ask_to_stop()) {
    RemoveTemporaries();
    std::signal(signal, SIG_DFL);
    std::raise(signal);  // ends the program once this returns
  }
  errno = error;
}

/// A file that the program opens must not take the place of a standard stream that its caller has
/// closed: messages would go into it. What is opened there instead fails as a closed stream does.
void OccupyStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const bool is_closed = fcntl(stream, F_GETFD) == -1;
    if (is_closed) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace

int RunProgram(int argc, char** argv, int (*program)(std::vector<std::string> arguments)) {
  OccupyStandardStreams();
  return program({argv + 1, argv + argc});
}

void WorkOnThread(const std::function<void()>& work) { work(); }

void Await(std::vector<std::jthread>& threads) { threads.clear(); }

void CatchInterrupts(bool (*ask)()) {
  ask_to_stop = ask;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (std::signal(signal, Interrupt) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
  // A file that grows beyond its limit and a pipe that nobody reads are failures to write.
  for (const int signal : {SIGXFSZ, SIGPIPE}) std::signal(signal, SIG_IGN);
}

/// What can be taken from caches counts; the number of free pages does not have it.
uint64_t FreeMemory() {
  constexpr uint64_t kKilobyte = 1024;
  std::ifstream lines("/proc/meminfo");
  uint64_t kilobytes = 0;
  for (std::string name; lines >> name;) {
    if (name == "MemAvailable:" && lines >> kilobytes) return kilobytes * kKilobyte;
  }
  return 0;
}

bool ErrorsAreShown() { return isatty(STDERR_FILENO) != 0; }

}  // namespace vok::cli
