// The files that a command writes beside its work, and the one rule of what they may take the place
// of: nothing, an empty file, or a file of their own kind.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host.h"

namespace vok::cli {

/// What a file is, as its first bytes tell.
struct OutputKind {
  const char* name;                              ///< such as "a cube"
  bool (*is_known)(std::string_view beginning);  ///< of at most 4096 bytes, at least one
  const char* advice = "Give another name, or move it away first.";
  bool is_added_to = false;  ///< what is there stays
};

extern const OutputKind kCubeFile;
extern const OutputKind kBadRowsList;
extern const OutputKind kRunLog;
extern const OutputKind kSettingsDocument;
extern const OutputKind kTextsOfWindows;
extern const OutputKind kLanguageTable;

/// The same text for every spelling of one file, which need not be there: links are followed, and
/// case does not count where paths have drives.
std::string FileIdentity(const Host& host, const std::string& path);

/// Failure 58 for a file of another kind, and for one of `used`: what the command reads or writes
/// otherwise. Reads the file's beginning, with the failures of `Files::Open`. Devices and pipes
/// pass: what writes to them says whether it can. Names such as /dev/stdout, which can lead to any
/// file of the caller's, are for what is added to alone.
void CheckOutput(const Host& host, const std::string& path, const OutputKind& kind,
                 const std::vector<std::string>& used = {});

/// Checks the path and begins the file, so that nobody learns after the work that it cannot be
/// written. Failures are those of `CheckOutput` and `Files::Replace`.
std::unique_ptr<FileReplacement> BeginOutput(const Host& host, const std::string& path,
                                             const OutputKind& kind,
                                             const std::vector<std::string>& used);

/// A text for a file, or for standard output where the path is "-", "/dev/stdout" or empty.
class TextOutput {
 public:
  /// Failures are those of `BeginOutput`.
  TextOutput(const Host& host, const std::string& path, const OutputKind& kind,
             const std::vector<std::string>& used = {});
  /// The whole text; once.
  void Write(const std::string& text);

 private:
  std::unique_ptr<FileReplacement> file_;  ///< null: standard output
};

}  // namespace vok::cli
