#include "reports/query_log.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "env/directories.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

constexpr char kLogLineEnd[] = "\r\n";

struct Replacement {
  std::string_view find;
  std::string_view put;
};

/// In this order: later rules see the line ends that earlier ones put in.
constexpr std::array<Replacement, 11> kReplacements = {{
    {",", ",\r\n"},
    {";", ";\r\n"},
    {" AND ", " \r\nAND "},
    {" OR ", " \r\nOR "},
    {"WHERE ", " \r\nWHERE "},
    {"SELECT", " \r\nSELECT\r\n"},
    {"OPTIONS", " \r\nOPTIONS"},
    {" FROM ", " \r\n FROM \r\n"},
    {"DIMENSION", " \r\nDIMENSION"},
    {"INNER JOIN", " \r\nINNER JOIN"},
    {"\t", "\t\r\n"},
}};

bool SameLetter(char a, char b) { return LowerAscii(a) == LowerAscii(b); }

std::string ReplaceAll(std::string_view text, const Replacement& rule) {
  std::string result;
  for (auto at = text.begin();;) {
    const auto hit = std::search(at, text.end(), rule.find.begin(), rule.find.end(), SameLetter);
    result.append(at, hit);
    if (hit == text.end()) return result;
    result += rule.put;
    at = hit + static_cast<std::ptrdiff_t>(rule.find.size());
  }
}

std::string Lines(std::string_view text, int16_t width) {
  if (width < 1) return std::string(text) + kLogLineEnd;
  std::string lines;
  do {
    const std::string_view piece = Utf16Prefix(text, static_cast<std::size_t>(width));
    lines += piece;
    lines += kLogLineEnd;
    text.remove_prefix(piece.size());
  } while (!text.empty());
  return lines;
}

std::string LogFolder(const Host& host, Environment& environment) {
  if (!FindSettingsFolder(host, environment)) return environment.SettingsFolder;
  std::string folder = environment.SettingsFolder + "\\Log";
  if (!host.files.IsDirectory(folder)) MakeDirectories(host, folder);
  return folder;
}

void Write(Files& files, const std::string& file, const std::string& entry, bool append) {
  if (append) {
    files.Append(file, std::string(kLogLineEnd) + kLogLineEnd + entry);
  } else {
    WriteWholeFile(files, file, entry);
  }
}

}  // namespace

std::string FormatQueryText(std::string text) {
  for (const Replacement& rule : kReplacements) text = ReplaceAll(text, rule);
  return text;
}

void WriteQueryLog(const Host& host, Environment& environment, const std::string& Text,
                   const std::string& LogName, bool Append, int16_t LineWidth, bool Format) {
  const std::string entry = Format ? FormatQueryText(Text) + kLogLineEnd : Lines(Text, LineWidth);
  try {
    Write(host.files, LogFolder(host, environment) + "\\" + LogName + ".log", entry, Append);
  } catch (const Failure& failure) {
    throw Failure(
        failure.number(),
        failure.description() +
            " A query is sent only after it is in the log. Get the right to write there, or "
            "choose another settings folder.",
        failure.source(), failure.section());
  }
}

}  // namespace vok
