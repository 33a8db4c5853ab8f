// How far a query may go, as the command line takes it.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace vok::cli {

/// The options `--max-cells`, `--memory` and `--timeout` of a command.
class LimitOptions {
 public:
  /// The object outlives the command.
  void AddTo(CLI::App& command);
  /// For the end of a connection text, such as "Max Memory=100;"; "" when none is given.
  std::string ConnectionText() const;

 private:
  std::string max_cells_;
  std::string memory_;
  std::string timeout_;
};

}  // namespace vok::cli
