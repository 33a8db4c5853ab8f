// What the recording doubles are told and what they wrote down: two files, named by the
// environment.
//
//   VOK_RECORDER_ANSWERS   what calls give back, a line for each: the call as it is written down,
//                         " -> " and the answer; answers with " | " between are given in turn, the
//                         last one again and again
//   VOK_RECORDER_LOG       every call, a line for each; what an earlier process was assigned there
//   is
//                         still assigned
//
// A line "reject N CALL" has the first N calls of that path rejected, without being written down.
//
// An answer is a number, `true`, `false`, `null`, `empty`, a 'text', `error N text`, or
// `rows a,b;c,d`, the rows of a record set as one array. A call without an answer gives what was
// last assigned there, else an object.
#pragma once

#include <optional>
#include <string>

#include "system/automation/ole.h"
#include "system/automation/variant.h"

namespace vok::com_recorder {

void WriteDown(const std::string& line);

/// Whether a call of that path is to be rejected, as by a program that is busy.
bool IsRejected(const std::string& path);

/// Throws the `Failure` of an error answer.
std::optional<windows::Variant> AnswerTo(const std::string& call);

/// Keeps what was assigned, for later reading.
void Assign(const std::string& property, const VARIANT& value);

/// A value as it is written down: type and value, of arrays type, bounds and elements; of large
/// ones the first, and a sum over all.
std::string Shown(const VARIANT& value);

}  // namespace vok::com_recorder
