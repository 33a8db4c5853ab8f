// How a cube server is reached and who asks. None of it comes from a saved query setting, and none
// of it is ever part of a failure's text or a log.
#pragma once

#include <functional>
#include <string>

namespace vok::xmla {

struct XmlaSettings {
  std::string user;
  std::string password;
  std::string server;          ///< host, or host:port, to which the two may go
  std::string authentication;  ///< "basic", "digest", "ntlm", "negotiate"; "": what the server asks
  std::string ca_file;         ///< PEM file of trusted certificates; "": the system's
  std::string proxy;           ///< "": the system's
  int connect_seconds = 30;    ///< until the connection stands; 0: no limit
  int idle_seconds = 600;      ///< without a byte in either direction; 0: no limit
  int total_seconds = 0;       ///< for a whole request; 0: no limit
  int answer_megabytes = 1024;  ///< of XML, unpacked; 0: no limit
};

/// Gives a setting's text, "" for one that is not set.
using SettingLookup = std::function<std::string(const std::string& key)>;

/// Reads `User`, `Password`, `Server`, `Authentication`, `CaFile`, `Proxy`, `ConnectSeconds`,
/// `IdleSeconds`, `TotalSeconds` and `AnswerMegabytes`. The environment variable of a key comes
/// first: `VOKCUBE_XMLA_` and the key in capitals with "_" between its words, such as
/// VOKCUBE_XMLA_CA_FILE. Failure 13 for a number, a host or an authentication that is not one.
XmlaSettings ReadXmlaSettings(const SettingLookup& lookup);

}  // namespace vok::xmla
