// Reads the XML of one part, calling out at each element. Documents with a DOCTYPE (and so with
// entities of their own) and elements nested deeper than `kMaxXmlDepth` are refused.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vok::xlsx {

inline constexpr std::size_t kMaxXmlDepth = 64;

/// Attributes of the element at hand.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}
  /// The value of the attribute of that name, whatever its prefix; "" when there is none.
  std::string_view Get(std::string_view name) const;
  bool IsTrue(std::string_view name) const;

  /// Calls `visit(name, value)` for each; the name without its prefix.
  template <typename Visit>
  void ForEach(Visit visit) const;

 private:
  const char** pairs_;
};

/// Element names come without their prefix. What a handler throws comes out of `ParseXml`.
class XmlHandler {
 public:
  virtual ~XmlHandler() = default;
  virtual void Start(std::string_view name, const XmlAttributes& attributes) = 0;
  virtual void End(std::string_view) {}
  /// A piece of character data; one run of it may come in several.
  virtual void Characters(std::string_view) {}
};

/// `path` and `part` are for failures: 1004 for anything that is not well-formed.
void ParseXml(std::string_view xml, XmlHandler& handler, const std::string& path,
              const std::string& part);

inline std::string_view LocalName(const char* name) {
  const std::string_view whole(name);
  const std::size_t colon = whole.find(':');
  return colon == std::string_view::npos ? whole : whole.substr(colon + 1);
}

template <typename Visit>
void XmlAttributes::ForEach(Visit visit) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
    visit(LocalName(pair[0]), std::string_view(pair[1]));
  }
}

}  // namespace vok::xlsx
