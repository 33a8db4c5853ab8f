#include "providers/cube/xmla/xmla_settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "platform/failure.h"

namespace vok::xmla {
namespace {

constexpr int kLargestSeconds = 7 * 24 * 3600;  // a week
constexpr int kLargestMegabytes = 1'000'000;
constexpr std::size_t kLongestPassword = 1024;
constexpr std::array<std::string_view, 5> kAuthentications = {"", "basic", "digest", "ntlm",
                                                              "negotiate"};

/// "CaFile" is VOKCUBE_XMLA_CA_FILE.
std::string VariableName(std::string_view key) {
  std::string name = "VOKCUBE_XMLA";
  for (const char letter : key) {
    const bool capital = letter >= 'A' && letter <= 'Z';
    if (capital) name += '_';
    name += capital ? letter : static_cast<char>(letter - 'a' + 'A');
  }
  return name;
}

std::optional<std::string> Variable(const std::string& key) {
  const char* value = std::getenv(VariableName(key).c_str());
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::string Text(const SettingLookup& lookup, const std::string& key) {
  const auto variable = Variable(key);
  return variable ? *variable : lookup(key);
}

[[noreturn]] void Refuse(const std::string& key, const std::string& why) {
  throw Failure(failure_number::kTypeMismatch, "Type mismatch: the cube server setting " + key +
                                                   " (Qel.ini, section [Xmla], or " +
                                                   VariableName(key) + ") " + why + ".");
}

void ReadLimit(const SettingLookup& lookup, const std::string& key, int& limit, int largest,
               const char* unit) {
  const std::string text = Text(lookup, key);
  if (text.empty()) return;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, limit);
  const bool whole = result.ec == std::errc() && result.ptr == end;
  if (!whole || limit < 0 || limit > largest) {
    Refuse(key, std::string("must be a whole number of ") + unit + " from 0 (no limit) to " +
                    std::to_string(largest));
  }
}

void ReadSeconds(const SettingLookup& lookup, const std::string& key, int& seconds) {
  ReadLimit(lookup, key, seconds, kLargestSeconds, "seconds");
}

std::string ServerHost(const SettingLookup& lookup) {
  constexpr const char* kKey = "Server";
  std::string text = Text(lookup, kKey);
  if (text.find_first_of("/\\@?# \t") != std::string::npos) {
    Refuse(kKey, "must be a host's name, such as olap.example or olap.example:8443");
  }
  return text;
}

std::string PasswordIn(const std::string& path, const FileBeginning& read) {
  constexpr const char* kKey = "PasswordFile";
  std::string text;
  try {
    text = read(path, kLongestPassword + 1);
  } catch (const Failure& failure) {
    Refuse(kKey, "names a file that does not give the password: " + failure.description());
  }
  std::string password = text.substr(0, text.find_first_of("\r\n"));
  if (password.empty() || password.size() > kLongestPassword) {
    Refuse(kKey, "must name a file whose first line is the password, of at most " +
                     std::to_string(kLongestPassword) + " bytes; \"" + path + "\" is not one");
  }
  return password;
}

std::string Password(const SettingLookup& lookup, const FileBeginning& read) {
  const auto password = Variable("Password");
  if (password) return *password;
  const auto file = Variable("PasswordFile");
  if (file && !file->empty()) return PasswordIn(*file, read);
  const std::string written = lookup("Password");
  const std::string named = file ? "" : lookup("PasswordFile");
  return written.empty() && !named.empty() ? PasswordIn(named, read) : written;
}

std::string Authentication(const SettingLookup& lookup) {
  constexpr const char* kKey = "Authentication";
  std::string text = Text(lookup, kKey);
  std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  if (std::find(kAuthentications.begin(), kAuthentications.end(), text) == kAuthentications.end()) {
    Refuse(kKey, "must be basic, digest, ntlm or negotiate, or left out");
  }
  return text;
}

}  // namespace

HttpSettings ReadXmlaSettings(const SettingLookup& lookup, const FileBeginning& read) {
  HttpSettings settings;
  settings.user = Text(lookup, "User");
  settings.password = Password(lookup, read);
  settings.server = ServerHost(lookup);
  settings.authentication = Authentication(lookup);
  settings.ca_file = Text(lookup, "CaFile");
  settings.proxy = Text(lookup, "Proxy");
  ReadSeconds(lookup, "ConnectSeconds", settings.connect_seconds);
  ReadSeconds(lookup, "IdleSeconds", settings.idle_seconds);
  ReadSeconds(lookup, "TotalSeconds", settings.total_seconds);
  ReadLimit(lookup, "AnswerMegabytes", settings.answer_megabytes, kLargestMegabytes, "megabytes");
  return settings;
}

}  // namespace vok::xmla
