#include "providers/server/login.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/shown_text.h"
#include "platform/text.h"

namespace vok::server {
namespace {

constexpr std::string_view kLeftOut = "…";

struct HostAndPort {
  std::string_view host;
  std::string_view port;  ///< "" when it is not given
};

/// An address of version 6 has brackets around its colons.
HostAndPort Split(std::string_view authority) {
  const std::size_t colon = authority.find_last_of(":]");
  if (colon == authority.npos || authority[colon] == ']') return {authority, {}};
  return {authority.substr(0, colon), authority.substr(colon + 1)};
}

HostAndPort Target(std::string_view address) {
  address.remove_prefix(std::min(address.find(':') + 1, address.size()));
  address.remove_prefix(std::min(address.find_first_not_of('/'), address.size()));
  return Split(address.substr(0, address.find_first_of("/?#")));
}

/// What an address begins with.
struct Scheme {
  std::string_view name;
  std::string_view port;
  bool is_secure;
};
constexpr std::array<Scheme, 4> kSchemes = {{{"https", "443", true},
                                             {"postgresql", "5432", true},
                                             {"postgres", "5432", true},
                                             {"http", "80", false}}};

const Scheme& SchemeOf(std::string_view address) {
  const std::string_view name = address.substr(0, address.find(':'));
  for (const Scheme& scheme : kSchemes) {
    if (EqualNoCaseAscii(name, scheme.name)) return scheme;
  }
  return kSchemes.back();
}

bool IsFor(const std::string& server, const std::string& address) {
  const HostAndPort wanted = Split(server);
  const HostAndPort target = Target(address);
  return EqualNoCaseAscii(wanted.host, target.host) &&
         (wanted.port.empty() ||
          wanted.port == (target.port.empty() ? SchemeOf(address).port : target.port));
}

void Replace(std::string& words, std::string_view secret) {
  for (std::size_t at = words.find(secret); !secret.empty() && at != words.npos;
       at = words.find(secret, at + kLeftOut.size())) {
    words.replace(at, secret.size(), kLeftOut);
  }
}

}  // namespace

std::string WhyNoLogin(const ServerSettings& settings, const std::string& address) {
  if (settings.user.empty() && settings.authentication != "negotiate") return {};
  const auto where = [&](const char* key) {
    return std::string(" in Qel.ini, section [") + settings.kind.section + "], or " +
           settings.kind.variables + key;
  };
  if (settings.server.empty()) {
    return "write the host that may have them as Server" + where("SERVER");
  }
  if (!IsFor(settings.server, address)) {
    return "Server" + where("SERVER") + " names another host, " + OneLine(settings.server);
  }
  if (!SchemeOf(address).is_secure && settings.authentication != "basic") {
    return "over http they can be read on the way; use https, or, where that does not matter, "
           "write basic as Authentication" +
           where("AUTHENTICATION");
  }
  return {};
}

ServerSettings WithoutLogin(ServerSettings settings) {
  settings.user.clear();
  settings.password.clear();
  settings.authentication.clear();
  return settings;
}

std::string WithoutSecrets(std::string words, const ServerSettings& settings) {
  Replace(words, settings.password);
  const std::size_t end = words.rfind('@');
  if (end == words.npos) return words;
  const std::size_t quote = words.find('\'') + 1;  // 0: there is none
  const std::size_t start = quote > 0 && quote < end ? quote : words.rfind(' ', end) + 1;
  return words.replace(start, end - start, kLeftOut);
}

}  // namespace vok::server
