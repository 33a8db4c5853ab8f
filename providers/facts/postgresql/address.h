// Where a PostgreSQL server is, who asks it, and how the way there is kept safe.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/server_settings.h"

namespace vok::postgresql {

struct Address {
  std::vector<std::pair<std::string, std::string>> parameters;  ///< for libpq
  std::string shown;                                            ///< without user and options
  std::string kept;      ///< with the options that say where the server is and how safe the way is
  std::string no_login;  ///< why the login of the settings is not sent; "" where it is, or is none
};

/// Reads "postgresql://host:port/database?options". A server on another machine is reached through
/// TLS alone, and its certificate must be in order. The login of the settings goes to the host that
/// they name; without it libpq looks for one: PGUSER, PGPASSWORD, PGPASSFILE. Failures: not such an
/// address; it bears a password; it asks for less safety.
Address ReadAddress(const std::string& text, const ServerSettings& settings);

}  // namespace vok::postgresql
