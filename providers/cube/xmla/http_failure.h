// Why an answer does not do, in words for people: one text for each way to fail.
#pragma once

#include <string>
#include <string_view>

#include "platform/failure.h"
#include "platform/http.h"

namespace vok::xmla {

// Words of servers and libraries stand on one line, without passwords.
// `beginning` is everywhere that of the answer's body, in any encoding; "" when nothing came.

/// An answer that cannot hold a result: another status than 200, or no XML.
Failure AnswerFailure(const HttpHead& head, std::string_view beginning, const std::string& address);

/// What claims to be XML and is not, or is not an answer; `why` says in which way.
Failure ContentFailure(const HttpHead& head, const std::string& why, std::string_view beginning,
                       const std::string& address);

/// An answer that ends in the middle.
Failure CutShortFailure(std::string_view beginning, const std::string& address);

}  // namespace vok::xmla
