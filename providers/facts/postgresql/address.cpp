#include "providers/facts/postgresql/address.h"

#include <libpq-fe.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>

#include "platform/failure.h"
#include "platform/shown_text.h"
#include "providers/server/login.h"

namespace vok::postgresql {
namespace {

using Parameters = std::vector<std::pair<std::string, std::string>>;

constexpr char kSystemAuthorities[] = "/etc/ssl/certs/ca-certificates.crt";

/// Neither user nor options: both may hold what must not be shown.
std::string Shown(const std::string& text) {
  return WithoutUsers(text.substr(0, text.find_first_of("?#")));
}

std::string Kept(const std::string& text) {
  constexpr std::array<std::string_view, 6> kKept{
      "host=", "hostaddr=", "port=", "dbname=", "sslmode=", "service="};
  std::string kept = Shown(text);
  std::string_view options(text);
  options.remove_prefix(std::min(text.find('?'), text.size()));
  while (!options.empty()) {
    options.remove_prefix(1);
    const std::string_view option = options.substr(0, options.find('&'));
    options.remove_prefix(option.size());
    const bool is_kept = std::any_of(kKept.begin(), kKept.end(), [&](std::string_view each) {
      return option.starts_with(each);
    });
    if (is_kept) (kept += kept.find('?') == kept.npos ? '?' : '&') += option;
  }
  return kept;
}

[[noreturn]] void Refuse(const std::string& text, const std::string& why) {
  throw Failure(failure_number::kUnspecified, Shown(text) + ": " + why);
}

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

const std::string* Find(const Parameters& parameters, std::string_view key) {
  const auto found = std::find_if(parameters.begin(), parameters.end(),
                                  [&](const auto& each) { return each.first == key; });
  return found == parameters.end() ? nullptr : &found->second;
}

void Set(Parameters& parameters, const std::string& key, const std::string& value) {
  std::erase_if(parameters, [&](const auto& each) { return each.first == key; });
  parameters.emplace_back(key, value);
}

/// As it is given, else as the environment has it.
std::string Value(const Parameters& parameters, std::string_view key, const char* variable) {
  const std::string* given = Find(parameters, key);
  return given != nullptr ? *given : Variable(variable);
}

Parameters Parse(const std::string& text) {
  char* words = nullptr;
  const std::unique_ptr<PQconninfoOption, void (*)(PQconninfoOption*)> options(
      PQconninfoParse(text.c_str(), &words), PQconninfoFree);
  const std::unique_ptr<char, void (*)(void*)> freed(words, PQfreemem);
  if (!options) Refuse(text, OneLine(words == nullptr ? "out of memory" : words));
  Parameters parameters;
  for (const PQconninfoOption* option = options.get(); option->keyword != nullptr; ++option) {
    if (option->val != nullptr) parameters.emplace_back(option->keyword, option->val);
  }
  return parameters;
}

std::vector<std::string> Parts(const std::string& list) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = list.find(',', begin);
    parts.push_back(list.substr(begin, end - begin));
    if (end == std::string::npos) return parts;
    begin = end + 1;
  }
}

bool IsThisMachine(const std::string& host) {
  return host.starts_with('/') || host.starts_with('@') || host == "localhost" || host == "::1" ||
         host.starts_with("127.");
}

/// Those that may answer; none where the library's own socket does.
std::vector<std::string> Hosts(const Parameters& parameters) {
  const std::string hosts = Value(parameters, "host", "PGHOST");
  if (!hosts.empty()) return Parts(hosts);
  const std::string numbers = Value(parameters, "hostaddr", "PGHOSTADDR");
  return numbers.empty() ? std::vector<std::string>() : Parts(numbers);
}

bool IsLocal(const Parameters& parameters, const std::vector<std::string>& hosts) {
  const std::string numbers = Value(parameters, "hostaddr", "PGHOSTADDR");
  const auto is_local = [](const std::vector<std::string>& all) {
    return std::all_of(all.begin(), all.end(), IsThisMachine);
  };
  if (hosts.empty()) return Value(parameters, "service", "PGSERVICE").empty();
  return is_local(hosts) && (numbers.empty() || is_local(Parts(numbers)));
}

void RequireTls(const std::string& text, const ServerSettings& settings, Parameters& parameters) {
  constexpr std::string_view kVerified = "verify-full";
  const std::string* mode = Find(parameters, "sslmode");
  if (mode != nullptr && *mode != kVerified) {
    Refuse(text,
           "a server on another machine is reached with sslmode=verify-full alone; the "
           "address says sslmode=" +
               OneLine(*mode) +
               ". Name the authority of its certificate as CaFile in "
               "Qel.ini, section [Database]");
  }
  Set(parameters, "sslmode", std::string(kVerified));
  std::error_code ignored;
  if (!settings.ca_file.empty()) {
    Set(parameters, "sslrootcert", settings.ca_file);
  } else if (Value(parameters, "sslrootcert", "PGSSLROOTCERT").empty() &&
             !std::filesystem::exists(Variable("HOME") + "/.postgresql/root.crt", ignored)) {
    Set(parameters, "sslrootcert", kSystemAuthorities);
  }
}

/// Why the login is not for one of the hosts; "" when it is for each.
std::string WhyNoLogin(const ServerSettings& settings, const Parameters& parameters,
                       const std::vector<std::string>& hosts) {
  const std::string* user = Find(parameters, "user");
  if (user != nullptr && *user != settings.user) return "the address names another user";
  const std::string ports = Value(parameters, "port", "PGPORT");
  for (std::string host : hosts.empty() ? std::vector<std::string>{"localhost"} : hosts) {
    if (host.starts_with('/') || host.starts_with('@')) host = "localhost";
    if (host.find(':') != std::string::npos) host = "[" + host + "]";
    for (const std::string& port : Parts(ports)) {
      const std::string way = host + (port.empty() ? "" : ":" + port);
      std::string why = server::WhyNoLogin(settings, "postgresql://" + way);
      if (!why.empty()) return why;
    }
  }
  return {};
}

}  // namespace

Address ReadAddress(const std::string& text, const ServerSettings& settings) {
  Address address{Parse(text), Shown(text), Kept(text), {}};
  Parameters& parameters = address.parameters;
  for (const char* secret : {"password", "sslpassword"}) {
    if (Find(parameters, secret) == nullptr) continue;
    Refuse(text,
           "the address bears a password. Take it out, and write User, Password and Server into "
           "Qel.ini, section [Database], or use VOKCUBE_DATABASE_PASSWORD or PGPASSFILE");
  }
  const auto hosts = Hosts(parameters);
  if (!IsLocal(parameters, hosts)) RequireTls(text, settings, parameters);
  if (!settings.user.empty()) {
    address.no_login = WhyNoLogin(settings, parameters, hosts);
    if (address.no_login.empty()) {
      Set(parameters, "user", settings.user);
      Set(parameters, "password", settings.password);
    }
  }
  Set(parameters, "client_encoding", "UTF8");
  Set(parameters, "fallback_application_name", "vokcube");
  return address;
}

}  // namespace vok::postgresql
