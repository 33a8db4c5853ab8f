// Reads an XML text, calling out at each element. Names come with the address of their name space,
// whatever prefix the writer chose. A text with a DOCTYPE (and so with entities of its own) and
// elements nested deeper than `kDeepestElement` are refused.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace vok::recordset {

struct XmlName {
  std::string_view space;  ///< "" for none
  std::string_view local;
  friend bool operator==(const XmlName&, const XmlName&) = default;
};

/// Attributes of the element at hand.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}
  /// nullptr when there is none of that name.
  const char* Get(XmlName name) const;
  template <typename Visit>
  void ForEach(Visit visit) const;

 private:
  const char** pairs_;
};

/// What a handler throws comes out of `ParseXml`.
class XmlHandler {
 public:
  virtual ~XmlHandler() = default;
  virtual void Start(XmlName name, const XmlAttributes& attributes) = 0;
  virtual void End() = 0;
};

/// UTF-8, or UTF-16 with its byte order mark. `name` is the file's, for failures.
void ParseXml(std::span<const std::byte> bytes, XmlHandler& handler, const std::string& name);

/// Of the text "space|local", as the parser gives it.
XmlName SplitName(std::string_view joined);

template <typename Visit>
void XmlAttributes::ForEach(Visit visit) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) visit(SplitName(pair[0]), pair[1]);
}

}  // namespace vok::recordset
