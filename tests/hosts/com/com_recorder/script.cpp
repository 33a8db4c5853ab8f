#include "tests/hosts/com/com_recorder/script.h"

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <map>

#include "platform/failure.h"
#include "system/automation/bstr.h"
#include "tests/hosts/com/com_recorder/recorder.h"

namespace vok::com_recorder {
namespace {

using windows::Variant;

constexpr ULONG kShownElements = 64;
constexpr ULONG kFirstElements = 4;  // of larger arrays

struct Script {
  std::map<std::string, std::deque<std::string>> answers;
  std::map<std::string, Variant> assigned;
  std::map<std::string, int> rejections;
  std::ofstream log;

  Script() {
    if (const char* file = std::getenv("VOK_RECORDER_LOG")) {
      Remember(file);
      log.open(file, std::ios::app);
    }
    const char* file = std::getenv("VOK_RECORDER_ANSWERS");
    std::ifstream lines(file == nullptr ? "" : file);
    for (std::string line; std::getline(lines, line);) {
      const std::size_t arrow = line.find(" -> ");
      if (line.starts_with("reject ")) Reject(line);
      if (arrow != std::string::npos) Add(line.substr(0, arrow), line.substr(arrow + 4));
    }
  }

  void Remember(const char* file);

  void Reject(const std::string& line) {
    const std::size_t blank = line.find(' ', 7);
    rejections[line.substr(blank + 1)] = std::stoi(line.substr(7));
  }

  void Add(const std::string& call, std::string list) {
    for (std::size_t bar = 0; bar != std::string::npos;) {
      bar = list.find(" | ");
      answers[call].push_back(list.substr(0, bar));
      if (bar != std::string::npos) list.erase(0, bar + 3);
    }
  }
};

Script& TheScript() {
  static Script script;
  return script;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

/// As a record set gives its rows: the first dimension are the columns.
Variant RowsArray(const std::string& text) {
  const auto rows = Split(text, ';');
  const auto columns = Split(rows[0], ',').size();
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(columns), 0},
                             {static_cast<ULONG>(rows.size()), 0}};
  Variant array;
  array.Get()->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  array.Get()->vt = VT_ARRAY | VT_VARIANT;
  const windows::ArrayAccess<VARIANT> cells(array.Get()->parray);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const auto cell = Split(rows[row], ',');
    for (std::size_t column = 0; column < columns; ++column) {
      const Value value = cell[column] == "null" ? Value(Null{}) : Value(cell[column]);
      cells[row * columns + column] = Variant(value).Detach();
    }
  }
  return array;
}

Variant Made(const std::string& answer) {
  if (answer == "true" || answer == "false") return Variant(Value(answer == "true"));
  if (answer == "null" || answer == "(null)") return Variant(Value(Null{}));
  if (answer == "empty") return Variant();
  if (answer[0] == '\'') return Variant(Value(answer.substr(1, answer.size() - 2)));
  if (answer.starts_with("rows ")) return RowsArray(answer.substr(5));
  if (answer.starts_with("error ")) {
    const std::size_t blank = answer.find(' ', 6);
    throw Failure(std::stoi(answer.substr(6)), answer.substr(blank + 1), "double");
  }
  if (answer.find('.') != std::string::npos) return Variant(Value(std::stod(answer)));
  return Variant(Value(static_cast<int32_t>(std::stol(answer))));
}

void Script::Remember(const char* file) {
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t equals = line.find(" = ");
    if (equals == std::string::npos) continue;
    const std::string value = line.substr(equals + 3);
    const bool is_text = value[0] == '\'' && value.size() > 1 && value.back() == '\'';
    if (is_text || std::isalnum(static_cast<unsigned char>(value[0])) != 0 || value == "(null)") {
      assigned[line.substr(0, equals)] = Made(value);
    }
  }
}

std::string TypeName(VARTYPE type) {
  switch (type) {
    case VT_VARIANT:
      return "Variant";
    case VT_BSTR:
      return "String";
    case VT_I2:
      return "Integer";
    default:
      return "type " + std::to_string(type);
  }
}

/// What stands in a large array shows in this, and changes it.
std::string SumOver(const windows::ArrayAccess<VARIANT>& elements, ULONG count) {
  uint64_t sum = 14695981039346656037U;
  ULONG empty = 0;
  for (ULONG index = 0; index < count; ++index) {
    const std::string shown = Shown(elements[index]);
    empty += shown == "(empty)" ? 1 : 0;
    for (const char c : shown + ',') sum = (sum ^ static_cast<unsigned char>(c)) * 1099511628211U;
  }
  return std::to_string(empty) + " empty, sum " + std::to_string(sum);
}

std::string ShownArray(SAFEARRAY* array) {
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(array, &type);
  std::string text = TypeName(type) + "(";
  ULONG count = 1;
  for (UINT dimension = 1; dimension <= SafeArrayGetDim(array); ++dimension) {
    LONG first = 0, last = 0;
    SafeArrayGetLBound(array, dimension, &first);
    SafeArrayGetUBound(array, dimension, &last);
    count *= static_cast<ULONG>(last - first + 1);
    text += (dimension == 1 ? "" : ", ") + std::to_string(first) + " To " + std::to_string(last);
  }
  text += ")";
  if (type != VT_VARIANT) return text;
  const windows::ArrayAccess<VARIANT> elements(array);
  text += " {";
  const ULONG shown = count > kShownElements ? kFirstElements : count;
  for (ULONG index = 0; index < shown; ++index) {
    text += (index == 0 ? "" : ", ") + Shown(elements[index]);
  }
  if (count > kShownElements) text += ", …" + SumOver(elements, count);
  return text + "}";
}

}  // namespace

void WriteDown(const std::string& line) { TheScript().log << line << std::endl; }

bool IsRejected(const std::string& path) {
  const auto found = TheScript().rejections.find(path);
  return found != TheScript().rejections.end() && found->second-- > 0;
}

std::optional<Variant> AnswerTo(const std::string& call) {
  Script& script = TheScript();
  if (const auto found = script.answers.find(call); found != script.answers.end()) {
    const std::string answer = found->second.front();
    if (found->second.size() > 1) found->second.pop_front();
    return Made(answer);
  }
  const auto assigned = script.assigned.find(call);
  if (assigned == script.assigned.end()) return std::nullopt;
  Variant copy;
  VariantCopy(copy.Get(), assigned->second.Get());
  return copy;
}

void Assign(const std::string& property, const VARIANT& value) {
  VARIANT source = value;
  VariantCopyInd(TheScript().assigned[property].Get(), &source);
}

std::string Shown(const VARIANT& value) {
  if (value.vt == VT_DISPATCH) return Recorder::PathOf(value.pdispVal);
  if (value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND) return "(left out)";
  if ((value.vt & VT_ARRAY) != 0) return ShownArray(value.parray);
  const Value held = windows::FromVariant(value);
  if (held.IsEmpty()) return "(empty)";
  if (held.IsNull()) return "(null)";
  if (value.vt == VT_BSTR) return "'" + held.ToText() + "'";
  if (value.vt == VT_BOOL) return held.ToBoolean() ? "true" : "false";
  const char* suffix = value.vt == VT_I2 ? "%" : value.vt == VT_R8 ? "#" : "";
  return Value(held.ToDouble()).ToText() + suffix;
}

}  // namespace vok::com_recorder
