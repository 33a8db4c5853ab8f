#include "providers/cube/olap/mdx/functions/registry.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "providers/cube/olap/mdx/token_reader.h"

namespace vok::olap {
namespace {

struct Signature {
  explicit Signature(std::string_view text) {
    for (const char c : text) {
      if (c == '|') {
        needed = letters.size();
      } else if (c == '*') {
        repeats = true;
      } else {
        letters += c;
      }
    }
    if (text.find('|') == std::string_view::npos) needed = letters.size();
  }

  bool TakesCount(std::size_t count) const {
    return count >= needed && (repeats || count <= letters.size());
  }
  ArgumentType At(std::size_t index) const {
    return static_cast<ArgumentType>(letters[std::min(index, letters.size() - 1)]);
  }

  std::string letters;
  std::size_t needed = 0;
  bool repeats = false;
};

bool Takes(const Signature& signature, const std::vector<Operand>& arguments) {
  if (!signature.TakesCount(arguments.size())) return false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!Fits(arguments[i], signature.At(i))) return false;
  }
  return true;
}

std::string DescribeSignature(const Signature& signature) {
  if (signature.letters.empty()) return "nothing";
  std::string text;
  for (std::size_t i = 0; i < signature.letters.size(); ++i) {
    if (!text.empty()) text += ", ";
    text += Describe(signature.At(i));
    if (i >= signature.needed) text += " (may be left out)";
  }
  return signature.repeats ? text + ", ..." : text;
}

std::string DescribeArguments(const std::vector<Operand>& arguments) {
  if (arguments.empty()) return "nothing";
  std::string text;
  for (const Operand& argument : arguments) {
    if (!text.empty()) text += ", ";
    text += Describe(argument);
  }
  return text;
}

constexpr std::array<std::string_view, 17> kFlags = {"ASC",
                                                     "DESC",
                                                     "BASC",
                                                     "BDESC",
                                                     "ALL",
                                                     "PRE",
                                                     "POST",
                                                     "INCLUDEEMPTY",
                                                     "EXCLUDEEMPTY",
                                                     "SELF",
                                                     "AFTER",
                                                     "BEFORE",
                                                     "LEAVES",
                                                     "SELF_AND_AFTER",
                                                     "SELF_AND_BEFORE",
                                                     "BEFORE_AND_AFTER",
                                                     "SELF_BEFORE_AFTER"};

bool Matches(const Function& function, std::string_view name, bool as_property) {
  return function.is_property == as_property && IsKeyword(function.name, name);
}

}  // namespace

bool IsFlag(std::string_view word) {
  return std::any_of(kFlags.begin(), kFlags.end(),
                     [word](std::string_view flag) { return IsKeyword(word, flag); });
}

std::size_t Call::Flag(std::size_t index, std::initializer_list<std::string_view> known,
                       std::size_t otherwise) const {
  if (!Has(index)) return otherwise;
  const std::string& word = std::get<FlagOperand>(arguments[index]).word;
  std::string names;
  std::size_t found = 0;
  for (const std::string_view flag : known) {
    if (IsKeyword(word, flag)) return found;
    names += (found++ > 0 ? ", " : "") + std::string(flag);
  }
  source.Fail(offset, word + " does not belong here; known are " + names);
}

HierarchyId Call::TimeHierarchy() const {
  const HierarchyId time = cube.TimeHierarchy();
  if (time == kNoHierarchy) source.Fail(offset, "the cube has no time dimension: give a member");
  return time;
}

const std::vector<Function>& Functions() {
  static const std::vector<Function> all = [] {
    std::vector<Function> list;
    for (const auto family :
         {MemberFunctions(), LevelFunctions(), SetFunctions(), OrderFunctions(), TimeFunctions(),
          AggregateFunctions(), LogicFunctions(), NumberFunctions(), NameFunctions()}) {
      list.insert(list.end(), family.begin(), family.end());
    }
    return list;
  }();
  return all;
}

bool IsFunction(std::string_view name, bool as_property) {
  const auto& all = Functions();
  return std::any_of(all.begin(), all.end(), [&](const Function& function) {
    return Matches(function, name, as_property);
  });
}

Operand CallFunction(std::string_view name, bool as_property, Call call) {
  std::string takes;
  for (const Function& function : Functions()) {
    if (!Matches(function, name, as_property)) continue;
    const Signature signature(function.signature);
    if (Takes(signature, call.arguments)) {
      for (std::size_t i = 0; i < call.arguments.size(); ++i) {
        call.arguments[i] = Convert(std::move(call.arguments[i]), signature.At(i));
      }
      return function.make(call);
    }
    if (!takes.empty()) takes += "; or ";
    takes += DescribeSignature(signature);
  }
  if (takes.empty()) call.source.Fail(call.offset, "not supported: " + std::string(name));
  call.source.Fail(call.offset, std::string(name) + " takes " + takes + "; it is given " +
                                    DescribeArguments(call.arguments));
}

}  // namespace vok::olap
