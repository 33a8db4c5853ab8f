#include "system/posix/registry_text.h"

#include <charconv>
#include <optional>

#include "platform/failure.h"
#include "platform/locale.h"
#include "platform/registry.h"
#include "system/posix/unicode_text.h"

namespace vok {
namespace {

constexpr uint32_t kBinary = 3;
constexpr uint32_t kDword = 4;

[[noreturn]] void ThrowUnreadable(const std::string& name, const std::string& why) {
  throw Failure(failure_number::kDeviceError,
                "Cannot read the registry file \"" + name + "\": " + why);
}

// The text between quotes, `rest` beginning after the first; nothing when it is not closed.
std::optional<std::string> TakeQuoted(std::string_view& rest) {
  std::string text;
  while (!rest.empty()) {
    char c = rest[0];
    rest.remove_prefix(1);
    if (c == '"') return text;
    if (c == '\\' && !rest.empty()) {
      c = rest[0];
      rest.remove_prefix(1);
    }
    text += c;
  }
  return std::nullopt;
}

std::optional<uint32_t> TakeHex(std::string_view& rest) {
  uint32_t number = 0;
  const auto read = std::from_chars(rest.data(), rest.data() + rest.size(), number, 16);
  if (read.ec != std::errc{}) return std::nullopt;
  rest.remove_prefix(static_cast<std::size_t>(read.ptr - rest.data()));
  return number;
}

std::optional<RegistryValue> ReadBytes(uint32_t type, std::string_view list) {
  RegistryValue value{type, {}};
  for (list = TrimSpace(list); !list.empty(); list = TrimSpace(list)) {
    const auto byte = TakeHex(list);
    if (!byte || *byte > 0xFF) return std::nullopt;
    value.bytes += static_cast<char>(*byte);
    list = TrimSpace(list);
    if (list.starts_with(',')) list.remove_prefix(1);
  }
  return value;
}

std::optional<RegistryValue> ReadDword(std::string_view digits) {
  const auto number = TakeHex(digits);
  if (!number || !digits.empty()) return std::nullopt;
  RegistryValue value{kDword, {}};
  for (int shift = 0; shift < 32; shift += 8) value.bytes += static_cast<char>(*number >> shift);
  return value;
}

/// A value after the "=". `wide`: the bytes of a string are UTF-16.
std::optional<RegistryValue> ReadValue(std::string_view text, bool wide) {
  if (text.starts_with('"')) {
    text.remove_prefix(1);
    auto content = TakeQuoted(text);
    if (!content) return std::nullopt;
    return RegistryValue{kRegistryString, *content + '\0'};
  }
  if (text.starts_with("dword:")) return ReadDword(text.substr(6));
  if (text.starts_with("hex:")) return ReadBytes(kBinary, text.substr(4));
  if (!text.starts_with("hex(")) return std::nullopt;
  text.remove_prefix(4);
  const auto type = TakeHex(text);
  if (!type || !text.starts_with("):")) return std::nullopt;
  auto value = ReadBytes(*type, text.substr(2));
  if (value && wide && *type == kRegistryString) value->bytes = TextOfUtf16(value->bytes);
  return value;
}

/// Whether the line assigns a list of bytes: no other line goes on after a "\" at its end.
bool IsByteList(std::string_view line) {
  if (line.starts_with('"')) {
    line.remove_prefix(1);
    if (!TakeQuoted(line)) return false;
  } else if (line.starts_with('@')) {
    line.remove_prefix(1);
  } else {
    return false;
  }
  line = TrimSpace(line);
  return line.starts_with('=') && TrimSpace(line.substr(1)).starts_with("hex");
}

class RegistryReader {
 public:
  RegistryReader(const Locale& locale, const std::string& name) : locale_(locale), name_(name) {}

  RegistryKeys Read(std::string_view text) {
    const auto header = TrimSpace(TakeLine(text));
    wide_ = header == "Windows Registry Editor Version 5.00";
    if (!wide_ && header != "REGEDIT4") {
      ThrowUnreadable(name_, "it does not begin with \"Windows Registry Editor Version 5.00\".");
    }
    while (!text.empty()) ReadLine(TakeWholeLine(text));
    return std::move(keys_);
  }

 private:
  static std::string TakeWholeLine(std::string_view& text) {
    std::string line(TrimSpace(TakeLine(text)));
    while (IsByteList(line) && line.ends_with('\\') && !text.empty()) {
      line.pop_back();
      line += TrimSpace(TakeLine(text));
    }
    return line;
  }

  void ReadLine(std::string_view line) {
    if (line.starts_with('[') && line.ends_with(']')) {
      ReadKey(line.substr(1, line.size() - 2));
    } else if (values_ != nullptr && line.starts_with('@')) {
      ReadAssignment({}, line.substr(1));
    } else if (values_ != nullptr && line.starts_with('"')) {
      line.remove_prefix(1);
      const auto name = TakeQuoted(line);
      if (name) ReadAssignment(locale_.FoldCase(*name), line);
    }
  }

  void ReadKey(std::string_view key) {
    if (!key.starts_with('-')) {
      values_ = &keys_[locale_.FoldCase(key)];
      return;
    }
    const std::string deleted = locale_.FoldCase(key.substr(1));
    std::erase_if(keys_, [&](const auto& entry) {
      return entry.first == deleted || entry.first.starts_with(deleted + "\\");
    });
    values_ = nullptr;
  }

  void ReadAssignment(const std::string& name, std::string_view rest) {
    rest = TrimSpace(rest);
    if (!rest.starts_with('=')) return;
    rest = TrimSpace(rest.substr(1));
    if (rest == "-") {
      values_->erase(name);
      return;
    }
    if (++count_ > kMostRegistryValues) {
      ThrowUnreadable(name_,
                      "it holds more than " + std::to_string(kMostRegistryValues) + " values.");
    }
    if (auto value = ReadValue(rest, wide_)) (*values_)[name] = *std::move(value);
  }

  const Locale& locale_;
  const std::string& name_;
  RegistryKeys keys_;
  RegistryValues* values_ = nullptr;
  std::size_t count_ = 0;
  bool wide_ = false;  ///< bytes of strings are UTF-16
};

}  // namespace

RegistryKeys ReadRegistryText(const Locale& locale, std::string_view bytes,
                              const std::string& name) {
  if (bytes.size() > kLargestRegistryText) {
    ThrowUnreadable(name, "it is larger than " + std::to_string(kLargestRegistryText) + " bytes.");
  }
  return RegistryReader(locale, name).Read(TextOfBytes(bytes));
}

}  // namespace vok
