// Why a request failed, in words for people: one text for each way to fail.
#pragma once

#include <curl/curl.h>

#include <string>

#include "platform/failure.h"
#include "providers/xmla/http_client.h"

namespace vok::xmla {

/// A transfer that libcurl ended; `words` are its own.
struct EndedTransfer {
  CURL* curl;
  CURLcode code;
  std::string words;
  const XmlaSettings& settings;
};

// `beginning` is everywhere that of the answer's body, in any encoding; "" when nothing came.

Failure TransferFailure(const EndedTransfer& transfer, std::string_view beginning,
                        const std::string& address);

/// No byte came or went for as long as the settings allow.
Failure IdleFailure(const XmlaSettings& settings, std::string_view beginning,
                    const std::string& address);

Failure CancelledFailure(const std::string& address);

/// An answer that cannot hold a result: another status than 200, or no XML.
Failure AnswerFailure(const HttpHead& head, std::string_view beginning, const std::string& address);

/// What claims to be XML and is none, or none that answers; `why` says in which way.
Failure ContentFailure(const HttpHead& head, const std::string& why, std::string_view beginning,
                       const std::string& address);

/// An answer that ends in the middle.
Failure CutShortFailure(std::string_view beginning, const std::string& address);

}  // namespace vok::xmla
