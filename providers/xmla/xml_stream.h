// Reads XML that arrives in pieces, calling out at each element. Documents with a DOCTYPE (and so
// with entities of their own), elements nested deeper than `kMaxXmlDepth` and texts longer than
// `kMaxXmlText` are refused: failure -2147467259, whose text says what and in which line.
#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

struct XML_ParserStruct;

namespace vok::xmla {

inline constexpr std::size_t kMaxXmlDepth = 64;
inline constexpr std::size_t kMaxXmlText = std::size_t{1} << 20;  // bytes

/// Attributes of the element at hand.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}
  /// The value of the attribute of that name, whatever its prefix; "" when there is none.
  std::string_view Get(std::string_view name) const;

 private:
  const char** pairs_;
};

/// Names come without their prefix. What a handler throws comes out of `XmlStream::Feed`.
class XmlHandler {
 public:
  virtual ~XmlHandler() = default;
  virtual void Start(std::string_view name, const XmlAttributes& attributes) = 0;
  /// `text`: what stood in the element since its last child.
  virtual void End(std::string_view name, std::string_view text) = 0;
};

class XmlStream {
 public:
  explicit XmlStream(XmlHandler& handler);
  ~XmlStream();
  XmlStream(const XmlStream&) = delete;
  XmlStream& operator=(const XmlStream&) = delete;

  /// A piece of any size, which may be read later.
  void Feed(std::string_view piece) { Parse(piece, false); }
  /// Nothing more comes: what was held back is read. False when the document is not at its end.
  bool Finish();

 private:
  struct Callbacks;

  void Parse(std::string_view piece, bool last);
  void Refuse(const char* why);

  XmlHandler& handler_;
  std::unique_ptr<XML_ParserStruct, void (*)(XML_ParserStruct*)> parser_;
  std::size_t depth_ = 0;
  std::string text_;
  std::string refusal_;
  std::exception_ptr thrown_;
};

}  // namespace vok::xmla
