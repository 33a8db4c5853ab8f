#include "cli/json_text.h"

#include <sstream>

#include "platform/shown_text.h"

namespace vok::cli {

std::string JsonText(const Json& document) {
  std::istringstream lines(document.dump(2, ' ', false, Json::error_handler_t::replace));
  std::string text;
  for (std::string line; std::getline(lines, line);) text += OneLine(line) + '\n';
  return text;
}

std::string ShownText(const Json& text) { return OneLine(text.get<std::string>()); }

}  // namespace vok::cli
