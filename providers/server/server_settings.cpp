#include "providers/server/server_settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "platform/failure.h"

namespace vok::server {
namespace {

constexpr int kLargestSeconds = 7 * 24 * 3600;  // a week
constexpr int kLargestMegabytes = 1'000'000;
constexpr std::size_t kLongestPassword = 1024;
constexpr std::array<std::string_view, 5> kAuthentications = {"", "basic", "digest", "ntlm",
                                                              "negotiate"};

class Reader {
 public:
  Reader(const ServerKind& kind, const SettingLookup& lookup, const FileBeginning& read)
      : kind_(kind), lookup_(lookup), read_(read) {}

  ServerSettings Read() const {
    ServerSettings settings;
    settings.kind = kind_;
    settings.user = Text("User");
    settings.password = Password();
    settings.server = ServerHost();
    settings.authentication = Authentication();
    settings.ca_file = Text("CaFile");
    settings.proxy = Text("Proxy");
    ReadSeconds("ConnectSeconds", settings.connect_seconds);
    ReadSeconds("IdleSeconds", settings.idle_seconds);
    ReadSeconds("TotalSeconds", settings.total_seconds);
    ReadLimit("AnswerMegabytes", settings.answer_megabytes, kLargestMegabytes, "megabytes");
    return settings;
  }

 private:
  /// "CaFile" is VOKCUBE_XMLA_CA_FILE.
  std::string VariableName(std::string_view key) const {
    std::string name = kind_.variables;
    for (const char letter : key) {
      const bool capital = letter >= 'A' && letter <= 'Z';
      if (capital && !name.ends_with('_')) name += '_';
      name += capital ? letter : static_cast<char>(letter - 'a' + 'A');
    }
    return name;
  }

  std::optional<std::string> Variable(const std::string& key) const {
    const char* value = std::getenv(VariableName(key).c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
  }

  std::string Text(const std::string& key) const {
    const auto variable = Variable(key);
    return variable ? *variable : lookup_(key);
  }

  [[noreturn]] void Refuse(const std::string& key, const std::string& why) const {
    throw Failure(failure_number::kTypeMismatch, std::string("Type mismatch: the ") + kind_.name +
                                                     " setting " + key + " (Qel.ini, section [" +
                                                     kind_.section + "], or " + VariableName(key) +
                                                     ") " + why + ".");
  }

  void ReadLimit(const std::string& key, int& limit, int largest, const char* unit) const {
    const std::string text = Text(key);
    if (text.empty()) return;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, limit);
    const bool whole = result.ec == std::errc() && result.ptr == end;
    if (!whole || limit < 0 || limit > largest) {
      Refuse(key, std::string("must be a whole number of ") + unit + " from 0 (no limit) to " +
                      std::to_string(largest));
    }
  }

  void ReadSeconds(const std::string& key, int& seconds) const {
    ReadLimit(key, seconds, kLargestSeconds, "seconds");
  }

  std::string ServerHost() const {
    constexpr const char* kKey = "Server";
    std::string text = Text(kKey);
    if (text.find_first_of("/\\@?# \t") != std::string::npos) {
      Refuse(kKey, "must be a host's name, such as olap.example or olap.example:8443");
    }
    return text;
  }

  std::string PasswordIn(const std::string& path) const {
    constexpr const char* kKey = "PasswordFile";
    std::string text;
    try {
      text = read_(path, kLongestPassword + 1);
    } catch (const Failure& failure) {
      std::string why = failure.description();
      if (why.ends_with('.')) why.pop_back();
      Refuse(kKey, "names a file that does not give the password: " + why);
    }
    std::string password = text.substr(0, text.find_first_of("\r\n"));
    if (password.empty() || password.size() > kLongestPassword) {
      Refuse(kKey, "must name a file whose first line is the password, of at most " +
                       std::to_string(kLongestPassword) + " bytes; \"" + path + "\" is not one");
    }
    return password;
  }

  std::string Password() const {
    const auto password = Variable("Password");
    if (password) return *password;
    const auto file = Variable("PasswordFile");
    if (file && !file->empty()) return PasswordIn(*file);
    const std::string written = lookup_("Password");
    const std::string named = file ? "" : lookup_("PasswordFile");
    return written.empty() && !named.empty() ? PasswordIn(named) : written;
  }

  std::string Authentication() const {
    constexpr const char* kKey = "Authentication";
    std::string text = Text(kKey);
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
      return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    if (std::find(kAuthentications.begin(), kAuthentications.end(), text) ==
        kAuthentications.end()) {
      Refuse(kKey, "must be basic, digest, ntlm or negotiate, or left out");
    }
    return text;
  }

  const ServerKind& kind_;
  const SettingLookup& lookup_;
  const FileBeginning& read_;
};

}  // namespace

ServerSettings ReadServerSettings(const ServerKind& kind, const SettingLookup& lookup,
                                  const FileBeginning& read) {
  return Reader(kind, lookup, read).Read();
}

}  // namespace vok::server
