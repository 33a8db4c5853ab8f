#include <unistd.h>

#include "cli/terminal.h"

namespace vok::cli {

std::vector<std::string> Arguments(int argc, char** argv) { return {argv + 1, argv + argc}; }

bool ErrorsAreShown() { return isatty(STDERR_FILENO) != 0; }

}  // namespace vok::cli
