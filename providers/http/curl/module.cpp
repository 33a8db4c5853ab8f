// What the component asks of this module when it loads it.
#include "providers/http/curl/curl_transport.h"

extern "C" __attribute__((visibility("default"))) vok::HttpTransport* vokcube_open_http(
    const std::string& address, const vok::ServerSettings& settings) {
  return new vok::CurlTransport(address, settings);
}
