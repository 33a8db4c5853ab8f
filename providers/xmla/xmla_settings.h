// How a cube server is reached and who asks. None of it comes from a saved query setting, and none
// of it is ever part of a failure's text or a log.
#pragma once

#include <functional>
#include <string>

namespace vok::xmla {

struct XmlaSettings {
  std::string user;
  std::string password;
  std::string authentication;  ///< "basic", "digest", "ntlm", "negotiate"; "": what the server asks
  std::string ca_file;         ///< PEM file of trusted certificates; "": the system's
  std::string proxy;           ///< "": the system's
  int connect_seconds = 30;    ///< until the connection stands; 0: no limit
  int idle_seconds = 600;      ///< without a byte in either direction; 0: no limit
  int total_seconds = 0;       ///< for a whole request; 0: no limit
};

/// Gives a setting's text, "" for one that is not set.
using SettingLookup = std::function<std::string(const std::string& key)>;

/// Reads `User`, `Password`, `Authentication`, `CaFile`, `Proxy`, `ConnectSeconds`, `IdleSeconds`
/// and `TotalSeconds`. The environment variable of a key comes first: `VOKCUBE_XMLA_` and the key
/// in capitals with "_" between its words, such as VOKCUBE_XMLA_CA_FILE. Failure 13 for a number of
/// seconds or an authentication that is none.
XmlaSettings ReadXmlaSettings(const SettingLookup& lookup);

}  // namespace vok::xmla
