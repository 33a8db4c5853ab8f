// Why a request did not bring an answer, in words for people: one text for each way to fail.
#pragma once

#include <string>
#include <string_view>

#include "platform/failure.h"
#include "platform/http.h"

namespace vok::server {

// Words of servers and libraries stand on one line, without passwords.
// `beginning` is that of the answer's body, in any encoding; "" when nothing came.

/// A transfer that ended before the answer was whole.
Failure TransferFailure(const Transfer& transfer, const ServerSettings& settings,
                        std::string_view beginning, const std::string& address);

/// An answer of more than `answer_megabytes`.
Failure TooLargeFailure(const ServerSettings& settings, const std::string& address);

/// The first line that is not blank, cut short.
std::string FirstLine(std::string_view beginning);

/// " Its answer begins: " and the first line that is not blank; "" where there is none.
std::string AnswerBegins(std::string_view beginning);

}  // namespace vok::server
