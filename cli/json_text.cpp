#include "cli/json_text.h"

namespace vok::cli {

std::string JsonText(const Json& document) {
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace vok::cli
