#include "providers/server/transfer_failure.h"

#include "platform/query_stop.h"
#include "platform/shown_text.h"
#include "providers/server/login.h"

namespace vok::server {
namespace {

Failure Unspecified(const std::string& text) { return {failure_number::kUnspecified, text}; }

std::string TheServer(const ServerSettings& settings, const std::string& address) {
  return std::string("The ") + settings.kind.name + " " + address + " ";
}

std::string Place(const ServerSettings& settings, const char* key) {
  return std::string(key) + " in Qel.ini, section [" + settings.kind.section + "]";
}

std::string Seconds(const ServerSettings& settings, int seconds, const char* key) {
  return std::to_string(seconds) + " seconds (" + Place(settings, key) + ")";
}

Failure TimedOut(const ServerSettings& settings, const std::string& what,
                 std::string_view beginning, const std::string& address) {
  return {failure_number::kTimeout, TheServer(settings, address) + what +
                                        ". Ask for less, or allow more time." +
                                        AnswerBegins(beginning)};
}

/// What happened, with the library's words in place of "%", and what to do.
std::string TransferText(const ServerSettings& settings, TransferEnd end) {
  switch (end) {
    case TransferEnd::kBadAddress:
      return "cannot be asked, its address is not valid: %. Write it as http://server/path.";
    case TransferEnd::kUnknownHost:
      return "is not known by that name: %. Check the address and the network.";
    case TransferEnd::kNoConnection:
      return "takes no connection: %. Is it running?";
    case TransferEnd::kUntrusted:
      return "cannot be trusted: %. Have this system trust its certificate authority, or, except "
             "on "
             "Windows, name the authority's file as " +
             Place(settings, "CaFile") + ".";
    case TransferEnd::kNotSecure:
      return "makes no secure connection: %. Is it a server for https?";
    case TransferEnd::kNotHttp:
      return "does not speak HTTP: %.";
    case TransferEnd::kNoAnswer:
      return "closed the connection without an answer: %. See its log, and try again.";
    case TransferEnd::kCutShort:
      return "ended its answer too early: %. See its log, and try again.";
    case TransferEnd::kDamaged:
      return "sent an answer whose compression is damaged: %.";
    default:
      return "could not be asked: %.";
  }
}

}  // namespace

std::string FirstLine(std::string_view beginning) {
  const std::size_t start = beginning.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos) return {};
  const std::string_view line = beginning.substr(start);
  return Excerpt(line.substr(0, line.find_first_of("\r\n")));
}

std::string AnswerBegins(std::string_view beginning) {
  const std::string line = FirstLine(beginning);
  return line.empty() ? "" : " Its answer begins: " + line;
}

Failure TransferFailure(const Transfer& transfer, const ServerSettings& settings,
                        std::string_view beginning, const std::string& address) {
  switch (transfer.end) {
    case TransferEnd::kCancelled:
      return {kQueryCancelled, std::string("The question to the ") + settings.kind.name + " " +
                                   address + " was cancelled."};
    case TransferEnd::kConnectSeconds:
      return TimedOut(settings,
                      "did not take the connection within " +
                          Seconds(settings, settings.connect_seconds, "ConnectSeconds"),
                      beginning, address);
    case TransferEnd::kIdleSeconds:
      return TimedOut(settings,
                      "sent nothing for " + Seconds(settings, settings.idle_seconds, "IdleSeconds"),
                      beginning, address);
    case TransferEnd::kTotalSeconds:
      return TimedOut(settings,
                      "did not finish its answer within " +
                          Seconds(settings, settings.total_seconds, "TotalSeconds"),
                      beginning, address);
    default:
      std::string text = TransferText(settings, transfer.end);
      text.replace(text.find('%'), 1, OneLine(WithoutSecrets(transfer.words, settings)));
      return Unspecified(TheServer(settings, address) + text + AnswerBegins(beginning));
  }
}

Failure TooLargeFailure(const ServerSettings& settings, const std::string& address) {
  return Unspecified(TheServer(settings, address) + "sent more than " +
                     std::to_string(settings.answer_megabytes) + " megabytes (" +
                     Place(settings, "AnswerMegabytes") + "). Ask for less, or allow more.");
}

}  // namespace vok::server
