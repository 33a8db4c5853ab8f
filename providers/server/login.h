// To whom the user's name and password go. Addresses stand in saved settings, which many may write;
// the login stands in the user's own Qel.ini. So the one does not decide where the other is sent.
#pragma once

#include <string>

#include "platform/server_settings.h"

namespace vok::server {

/// Why the login of the settings is not for that server; "" when it is, and when there is none. It
/// is for the host that `Server` names alone; over http, where it can be read on the way, only when
/// `Authentication` is "basic". An address of PostgreSQL stands for a connection that is secure.
std::string WhyNoLogin(const ServerSettings& settings, const std::string& address);

/// The settings without user, password and kind of login.
ServerSettings WithoutLogin(ServerSettings settings);

/// Words of a library or the system without the password of the settings, and without users of
/// proxies, which may be the system's own: from the quote, or else the blank, to the last "@".
std::string WithoutSecrets(std::string words, const ServerSettings& settings);

}  // namespace vok::server
