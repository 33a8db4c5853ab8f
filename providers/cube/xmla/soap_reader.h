// The envelope around an answer: passes on what stands inside its result, and turns what the server
// reports (a SOAP fault, an exception before, in or after a result) into a failure in its own
// words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "providers/xml/xml_parser.h"

namespace vok::xmla {

inline constexpr std::size_t kLongestText = std::size_t{1} << 20;  // bytes

/// What stands inside the element "root" of an answer. Levels count from 1, the root's children.
class ResultReader {
 public:
  virtual ~ResultReader() = default;
  virtual void Start(std::size_t level, std::string_view name,
                     const xml::Attributes& attributes) = 0;
  /// `text`: what stood in the element since its last child.
  virtual void End(std::size_t level, std::string_view name, std::string_view text) = 0;
  /// The whole answer was read without a failure.
  virtual void Finish() {}
};

/// Failure -2147467259 for XML that is not an XMLA answer; refuses texts longer than
/// `kLongestText`.
class SoapReader : public xml::Handler {
 public:
  explicit SoapReader(ResultReader& result) : result_(result) {}

  void Start(std::string_view name, const xml::Attributes& attributes) override;
  void End(std::string_view name) override;
  void Characters(std::string_view characters) override;

  /// What the server reported, in its own words; "" for nothing.
  std::string reported() const;
  /// Whether the answer held a result.
  bool has_result() const { return has_result_; }

 private:
  enum class Part { kEnvelope, kResult, kSchema, kMessages, kFault };

  void StartOutside(std::string_view name);
  void StartInRoot(std::string_view name, const xml::Attributes& attributes);
  void Report(std::string_view text);

  ResultReader& result_;
  Part part_ = Part::kEnvelope;
  std::size_t depth_ = 0;       // of the element at hand; the envelope's is 1
  std::size_t root_depth_ = 0;  // 0: not inside a root
  std::size_t part_depth_ = 0;  // of the element that began the schema, the messages or the fault
  std::string text_;            // since the last beginning or end of an element
  bool has_result_ = false;
  bool failed_ = false;
  std::size_t reports_ = 0;
  std::string report_;
};

}  // namespace vok::xmla
