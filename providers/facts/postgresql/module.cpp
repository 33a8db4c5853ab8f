// What the component asks of this module when it loads it.
#include "providers/facts/postgresql/postgresql_server.h"

extern "C" __attribute__((visibility("default"))) vok::TableServer* vokcube_open_postgresql(
    const std::string& address, const vok::ServerSettings& settings, const vok::QueryStop& stop) {
  return vok::postgresql::OpenServer(address, settings, stop).release();
}
