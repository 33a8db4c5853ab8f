#include "env/directories.h"

#include <string_view>

#include "platform/text.h"

namespace vok {
namespace {

constexpr auto kNone = std::string_view::npos;

/// Only a character that has one lower-case form of the same length is changed: "ß" stays, so that
/// the root still names the same share.
std::string LowerCase(const Locale& locale, std::string_view text) {
  std::string lower;
  while (!text.empty()) {
    const std::string_view character = Utf16Prefix(text, 1);
    const std::string folded = locale.FoldCase(character);
    const bool simple = folded.size() == character.size() && Utf16Prefix(folded, 1) == folded;
    lower += simple ? std::string_view(folded) : character;
    text.remove_prefix(character.size());
  }
  return lower;
}

std::optional<std::string> ShareRoot(const std::string& path) {
  const auto third = path.find('\\', 2);
  if (third == kNone || third == 2 || third + 1 == path.size()) return std::nullopt;
  const auto fourth = path.find('\\', third + 1);
  if (fourth == kNone) return path + "\\";
  if (fourth == third + 1) return std::nullopt;
  return path.substr(0, fourth + 1);
}

std::optional<std::string> DriveRoot(const std::string& path) {
  if (path.empty()) return std::nullopt;
  const std::string letter(Utf16Prefix(path, 1));
  if (path == letter) return letter + ":\\";
  if (path[letter.size()] != ':') return std::nullopt;
  return letter + ":\\";
}

/// How much of the path is its root and is never made. A root that is longer than the path by more
/// than its closing "\" was guessed from a single letter: such a path is a relative name.
std::size_t RootLength(const Host& host, const std::string& path) {
  const auto root = GetPathRoot(host.locale, path);
  if (!root || root->size() > path.size() + 1) return 0;
  return root->size() - 1;
}

}  // namespace

std::optional<std::string> GetPathRoot(const Locale& locale, const std::string& path) {
  std::optional<std::string> root;
  if (path.starts_with("\\\\")) {
    root = ShareRoot(path);
  } else if (!path.starts_with('\\')) {
    root = DriveRoot(path);
  }
  if (root) root = LowerCase(locale, *root);
  return root;
}

void MakeDirectories(const Host& host, const std::string& path) {
  const std::size_t root = RootLength(host, path);
  for (std::size_t end = root; end < path.size();) {
    end = path.find_first_of("\\/", end + 1);
    const std::string folder = path.substr(0, end);
    if (!host.files.IsDirectory(folder)) host.files.CreateDirectory(folder);
  }
}

}  // namespace vok
