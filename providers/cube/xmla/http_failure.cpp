#include "providers/cube/xmla/http_failure.h"

#include <algorithm>
#include <cctype>

#include "platform/shown_text.h"
#include "providers/server/transfer_failure.h"

namespace vok::xmla {
namespace {

using server::AnswerBegins;
using server::FirstLine;

std::string TheServer(const std::string& address) { return "The cube server " + address + " "; }

bool StartsWith(std::string_view text, std::string_view start) {
  if (text.size() < start.size()) return false;
  return std::equal(start.begin(), start.end(), text.begin(), [](char a, char b) {
    return a == static_cast<char>(std::tolower(static_cast<unsigned char>(b)));
  });
}

/// What is known by its first letters not to be XML; "" for anything else.
std::string KnownKind(const std::string& content_type, std::string_view beginning) {
  const std::string line = FirstLine(beginning);
  const std::string named =
      content_type.empty() ? "" : " (Content-Type " + Excerpt(content_type) + ")";
  if (StartsWith(line, "<!doctype html") || StartsWith(line, "<html")) {
    return "an HTML page" + named +
           " instead of XML: often a login page, or the address of another service";
  }
  if (line.starts_with('{') || line.starts_with('[')) {
    return "JSON" + named + " instead of XML: the address is probably that of another service";
  }
  return {};
}

std::string Kind(const std::string& content_type, std::string_view beginning) {
  if (beginning.empty()) return "nothing";
  std::string known = KnownKind(content_type, beginning);
  if (!known.empty()) return known;
  return content_type.empty() ? "something else than XML"
                              : "the Content-Type " + Excerpt(content_type) + " instead of XML";
}

Failure Unspecified(const std::string& text) { return {failure_number::kUnspecified, text}; }

std::string LoginAdvice(const HttpHead& head) {
  if (!head.no_login.empty())
    return "Those that are set were not sent to it: " + head.no_login + ".";
  return "Set User, Password and Server in Qel.ini, section [Xmla], or VOKCUBE_XMLA_USER, "
         "VOKCUBE_XMLA_PASSWORD and VOKCUBE_XMLA_SERVER.";
}

}  // namespace

Failure AnswerFailure(const HttpHead& head, std::string_view beginning,
                      const std::string& address) {
  const std::string status = "(HTTP status " + std::to_string(head.status) + ")";
  switch (head.status) {
    case 200:
      return Unspecified(TheServer(address) + "answered with " +
                         Kind(head.content_type, beginning) + "." + AnswerBegins(beginning));
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
      return Unspecified(TheServer(address) + "redirects to " +
                         (head.location.empty() ? "another address" : Excerpt(head.location)) +
                         " " + status +
                         ", which is not followed. If you trust that address, name it as "
                         "the cube file.");
    case 401:
      return {failure_number::kReadOnly, TheServer(address) + "asks for a user and a password " +
                                             "that it accepts " + status + ". " +
                                             LoginAdvice(head) + AnswerBegins(beginning)};
    case 407:
      return {failure_number::kReadOnly,
              "The proxy before the cube server " + address +
                  " asks for a user and a password that it accepts " + status +
                  ". Write them into Proxy in Qel.ini, section [Xmla], or into VOKCUBE_XMLA_PROXY: "
                  "there \"user:password@\" stands before the host." +
                  AnswerBegins(beginning)};
    case 403:
      return {failure_number::kReadOnly,
              TheServer(address) + "refuses this user " + status + "." + AnswerBegins(beginning)};
    case 404:
      return Unspecified(TheServer(address) + "has nothing at this address " + status +
                         ". Check the path, often /xmla." + AnswerBegins(beginning));
    default:
      return Unspecified(TheServer(address) + "failed " + status + ". See its log." +
                         AnswerBegins(beginning));
  }
}

Failure ContentFailure(const HttpHead& head, const std::string& why, std::string_view beginning,
                       const std::string& address) {
  const std::string known = KnownKind(head.content_type, beginning);
  if (!known.empty()) return AnswerFailure(head, beginning, address);
  return Unspecified(TheServer(address) + "sent an answer that cannot be read: " + why + "." +
                     AnswerBegins(beginning));
}

Failure CutShortFailure(std::string_view beginning, const std::string& address) {
  return Unspecified(TheServer(address) +
                     "ended its answer too early, in the middle of the XML. See its log, and try "
                     "again." +
                     AnswerBegins(beginning));
}

}  // namespace vok::xmla
