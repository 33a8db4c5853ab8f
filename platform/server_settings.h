// How servers are reached, cubes' as well as databases'.
#pragma once

#include <string>

namespace vok {

/// A kind of server, in messages, and where its settings are written.
struct ServerKind {
  const char* name;       ///< "cube server"
  const char* section;    ///< of Qel.ini
  const char* variables;  ///< what those of the environment begin with
};
inline constexpr ServerKind kCubeServers{"cube server", "Xmla", "VOKCUBE_XMLA_"};
inline constexpr ServerKind kDatabaseServers{"database server", "Database", "VOKCUBE_DATABASE_"};

/// How a server is reached and who asks. None of it is ever part of a failure's text or a log.
struct ServerSettings {
  ServerKind kind = kCubeServers;
  std::string user;
  std::string password;
  std::string server;          ///< host, or host:port, to which the two may go
  std::string authentication;  ///< "basic", "digest", "ntlm", "negotiate"; "": what the server asks
  std::string ca_file;         ///< PEM file of trusted certificates; "": the system's
  std::string proxy;           ///< "": the system's
  int connect_seconds = 30;    ///< until the connection stands; 0: no limit
  int idle_seconds = 600;      ///< without a byte in either direction; 0: no limit
  int total_seconds = 0;       ///< for a whole request; 0: no limit
  int answer_megabytes = 1024;  ///< of an answer, unpacked; 0: no limit
};

}  // namespace vok
