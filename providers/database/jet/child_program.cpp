#include "providers/database/jet/child_program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>

#include "platform/failure.h"

namespace vok::jet {
namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void ThrowNotStarted(const std::string& program, int error) {
  throw Failure(failure_number::kDeviceError,
                "Cannot start the program \"" + program + "\": " + std::strerror(error));
}

/// The two ends of a pipe, neither of them a standard stream: a host program may have closed those.
struct Pipe {
  explicit Pipe(const std::string& program) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) ThrowNotStarted(program, errno);
    read = AboveStandard(ends[0]);
    write = AboveStandard(ends[1]);
    if (read < 0 || write < 0) {
      const int error = errno;
      Close();
      ThrowNotStarted(program, error);
    }
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() { Close(); }

  static int AboveStandard(int descriptor) {
    if (descriptor > STDERR_FILENO) return descriptor;
    const int above = ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::close(descriptor);
    return above;
  }
  void CloseWrite() {
    if (write >= 0) ::close(write);
    write = -1;
  }
  void Close() {
    CloseWrite();
    if (read >= 0) ::close(read);
    read = -1;
  }

  int read = -1;
  int write = -1;
};

/// What a child begins with: its own streams, no other file of this process, and no signal that
/// this process ignores or holds back.
struct SpawnSetting {
  explicit SpawnSetting(int output) {
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    ::posix_spawnattr_init(&attributes);
    sigset_t signals;
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes, &signals);
    ::sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes, &signals);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  SpawnSetting(const SpawnSetting&) = delete;
  SpawnSetting& operator=(const SpawnSetting&) = delete;
  ~SpawnSetting() {
    ::posix_spawn_file_actions_destroy(&files);
    ::posix_spawnattr_destroy(&attributes);
  }

  posix_spawn_file_actions_t files{};
  posix_spawnattr_t attributes{};
};

class Child {
 public:
  Child(const std::string& program, const std::vector<std::string>& arguments, int output) {
    std::vector<char*> words = {const_cast<char*>(program.c_str())};
    for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    const SpawnSetting setting(output);
    const int error = ::posix_spawn(&id_, program.c_str(), &setting.files, &setting.attributes,
                                    words.data(), environ);
    if (error != 0) ThrowNotStarted(program, error);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    if (!ended_) Kill();
  }

  void Kill() {
    ::kill(id_, SIGKILL);
    Wait();
  }

  /// Nothing where the host program takes the ends of children for itself.
  std::optional<int> Wait() {
    int status = 0;
    pid_t waited = 0;
    do {
      waited = ::waitpid(id_, &status, 0);
    } while (waited < 0 && errno == EINTR);
    ended_ = true;
    return waited == id_ ? std::optional(status) : std::nullopt;
  }

 private:
  pid_t id_ = -1;
  bool ended_ = false;
};

/// Reads to the end; words for a limit that was reached.
std::string ReadOutput(int from, const ChildLimits& limits, std::string& output) {
  const auto deadline = Clock::now() + limits.time;
  std::array<char, 65536> piece{};
  for (;;) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd wait{from, POLLIN, 0};
    const int ready = left <= 0 ? 0 : ::poll(&wait, 1, static_cast<int>(left));
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) return "took longer than " + std::to_string(limits.time.count()) + " seconds";
    const ssize_t size = ::read(from, piece.data(), piece.size());
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) return "";
    output.append(piece.data(), static_cast<std::size_t>(size));
    if (output.size() > limits.bytes) {
      return "printed more than " + std::to_string(limits.bytes) + " bytes";
    }
  }
}

std::string EndOf(const std::optional<int>& status) {
  if (!status) return "ended early";
  if (!WIFSIGNALED(*status)) return "ended with the code " + std::to_string(WEXITSTATUS(*status));
  const int number = WTERMSIG(*status);
  return "was ended by the signal " + std::to_string(number) + " (" + ::strsignal(number) + ")";
}

}  // namespace

ChildAnswer RunChild(const std::string& program, const std::vector<std::string>& arguments,
                     const ChildLimits& limits) {
  Pipe pipe(program);
  Child child(program, arguments, pipe.write);
  pipe.CloseWrite();
  ChildAnswer answer;
  answer.end = ReadOutput(pipe.read, limits, answer.output);
  if (answer.end.empty()) {
    answer.end = EndOf(child.Wait());
  } else {
    child.Kill();
  }
  return answer;
}

}  // namespace vok::jet
