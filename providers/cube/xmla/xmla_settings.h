// Where the settings of cube servers come from: never from a saved query setting.
#pragma once

#include <functional>
#include <string>

#include "platform/http.h"

namespace vok::xmla {

/// Gives a setting's text, "" for one that is not set.
using SettingLookup = std::function<std::string(const std::string& key)>;

/// Reads `User`, `Password`, `Server`, `Authentication`, `CaFile`, `Proxy`, `ConnectSeconds`,
/// `IdleSeconds`, `TotalSeconds` and `AnswerMegabytes`. The environment variable of a key comes
/// first: `VOKCUBE_XMLA_` and the key in capitals with "_" between its words, such as
/// VOKCUBE_XMLA_CA_FILE. Failure 13 for a number, a host or an authentication that is not one.
HttpSettings ReadXmlaSettings(const SettingLookup& lookup);

}  // namespace vok::xmla
