// Reads XML that comes in pieces of any size, calling out at each element. UTF-8, or UTF-16 with
// its byte order mark. Refused are documents with a DOCTYPE (and so with entities of their own),
// elements nested too deeply, tags and comments that are too long, names without end, and what the
// handler refuses.
#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct XML_ParserStruct;

namespace vok::xml {

class ParserMemory;

/// Of a tag with its attributes, a comment or an instruction.
inline constexpr std::size_t kLongestToken = std::size_t{1} << 20;  // bytes

/// Of an element or an attribute.
struct Name {
  std::string_view space;  ///< the prefix or, where names are resolved, its address; "" for none
  std::string_view local;
  friend bool operator==(const Name&, const Name&) = default;
};

/// Attributes of the element at hand.
class Attributes {
 public:
  Attributes(Name element, const char** pairs, char separator)
      : element_(element), pairs_(pairs), separator_(separator) {}

  Name element() const { return element_; }
  /// nullptr when there is none of that name.
  const char* Find(Name name) const;
  /// The value of the attribute of that name in any space; "" when there is none.
  std::string_view Get(std::string_view local) const;
  bool IsTrue(std::string_view local) const;
  /// Calls `visit(Name, const char* value)` for each.
  template <typename Visit>
  void ForEach(Visit visit) const;

 private:
  Name element_;
  const char** pairs_;
  char separator_;
};

/// Element names come without their space.
class Handler {
 public:
  virtual ~Handler() = default;
  virtual void Start(std::string_view name, const Attributes& attributes) = 0;
  virtual void End(std::string_view) {}
  /// A piece of character data; one run of it may come in several.
  virtual void Characters(std::string_view) {}
};

/// A handler throws it at what it does not take.
struct Refusal {
  const char* why;
};

/// Why a text was not read to its end.
struct Fault {
  std::string why;
  std::size_t line = 0;
  bool refused = false;      ///< it may be proper XML
  bool ended_early = false;  ///< it is proper so far

  std::string InLine() const { return why + " in line " + std::to_string(line); }
};

enum class Names { kPrefixed, kResolved };

class Parser {
 public:
  Parser(Handler& handler, std::size_t deepest_element, Names names = Names::kPrefixed);
  ~Parser();
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  /// The next piece, nothing more after a fault. What a handler throws comes out, save a refusal.
  /// Takes time in proportion to the text, however small the pieces are.
  std::optional<Fault> Read(std::string_view piece, bool last);

 private:
  struct Callbacks;

  bool Feed(std::string_view text, bool last);
  Fault FaultNow() const;

  Handler& handler_;
  std::size_t deepest_element_;
  char separator_;
  std::unique_ptr<ParserMemory> memory_;
  std::unique_ptr<XML_ParserStruct, void (*)(XML_ParserStruct*)> parser_;
  std::size_t fed_ = 0;   // bytes
  std::size_t open_ = 0;  // of those, bytes of the token that is not at its end
  std::string held_;
  std::size_t depth_ = 0;
  const char* refusal_ = nullptr;
  std::exception_ptr thrown_;
};

/// Of the text "space<separator>local", as the parser gives it.
inline Name SplitName(std::string_view joined, char separator) {
  const std::size_t at = joined.rfind(separator);
  if (at == std::string_view::npos) return {{}, joined};
  return {joined.substr(0, at), joined.substr(at + 1)};
}

template <typename Visit>
void Attributes::ForEach(Visit visit) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
    visit(SplitName(pair[0], separator_), pair[1]);
  }
}

}  // namespace vok::xml
