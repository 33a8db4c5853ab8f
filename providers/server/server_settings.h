// Where the settings of servers come from: never from a saved query setting.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "platform/server_settings.h"

namespace vok::server {

/// Gives a setting's text, "" for one that is not set.
using SettingLookup = std::function<std::string(const std::string& key)>;

/// Gives the beginning of a file, at most `most` bytes of it; failures are those of the files port.
using FileBeginning = std::function<std::string(const std::string& path, std::size_t most)>;

/// Reads `User`, `Password` or `PasswordFile`, `Server`, `Authentication`, `CaFile`, `Proxy`,
/// `ConnectSeconds`, `IdleSeconds`, `TotalSeconds` and `AnswerMegabytes`. The environment variable
/// of a key comes first: `variables` of the kind and the key in capitals with "_" between its
/// words, such as VOKCUBE_XMLA_CA_FILE. The password is the first line of its file, where that is
/// named and the same place names no password. Failure 13 for a number, a host or an authentication
/// that is not one, and for a file that gives no password.
ServerSettings ReadServerSettings(const ServerKind& kind, const SettingLookup& lookup,
                                  const FileBeginning& read);

}  // namespace vok::server
