#include "providers/database/jet/child_program.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>

#include "tests/support/child_process.h"

namespace vok::jet {
namespace {

using testing::HasSubstr;

ChildAnswer RunShell(const std::string& script,
                     std::chrono::seconds time = std::chrono::seconds(20)) {
  return RunChild("/bin/sh", {"-c", script}, {1 << 20, time});
}

TEST(ChildProgramTest, TellsWhatWasPrintedAndHowItEnded) {
  const std::chrono::seconds second(1);
  const struct {
    ChildAnswer answer;
    const char* output;
    const char* end;
  } rows[] = {
      {RunShell("echo A; echo error >&2; exit 3"), "A\n", "code 3"},
      {RunShell("printf A; kill -SEGV $$"), "A", "signal 11 (Segmentation fault)"},
      {RunShell("printf A; exec sleep 100", second), "A", "longer than 1 seconds"},
      {RunShell("cat; ls /proc/self/fd | wc -l"), "4\n", "code 0"},  // three, and the folder itself
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.answer.output, row.output);
    EXPECT_THAT(row.answer.end, HasSubstr(row.end));
  }
  EXPECT_THAT(RunShell("exec cat /dev/zero").end, HasSubstr("more than 1048576 bytes"));
  EXPECT_THAT(test::DescriptionOf([] {
                RunChild("/nowhere/x", {}, {1, std::chrono::seconds(1)});
              }),
              testing::AllOf(HasSubstr("/nowhere/x"), HasSubstr("No such file")));
}

TEST(ChildProgramTest, RunsInHostProgramsThatCloseTheirStreamsAndIgnoreSignals) {
  const pid_t host = test::Start([] {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO}) ::close(stream);
    for (const int number : {SIGCHLD, SIGPIPE}) std::signal(number, SIG_IGN);
    if (RunShell("echo A; kill -PIPE $$; echo B").output != "A\n") throw Failure(1, "not A");
  });
  EXPECT_EQ(test::StatusOf(host), 0);
}

}  // namespace
}  // namespace vok::jet
