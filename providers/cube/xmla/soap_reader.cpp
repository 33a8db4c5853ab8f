#include "providers/cube/xmla/soap_reader.h"

#include "platform/failure.h"
#include "platform/shown_text.h"

namespace vok::xmla {
namespace {

constexpr std::size_t kLongestReport = 8000;  // bytes
constexpr std::size_t kMostReports = 100;

bool IsFaultText(std::string_view name) {
  return name == "faultstring" || name == "desc" || name == "Text" || name == "Description";
}

}  // namespace

void SoapReader::Start(std::string_view name, const xml::Attributes& attributes) {
  text_.clear();
  ++depth_;
  switch (part_) {
    case Part::kEnvelope:
      if (root_depth_ == 0) {
        StartOutside(name);
      } else {
        StartInRoot(name, attributes);
      }
      break;
    case Part::kResult:
      result_.Start(depth_ - root_depth_, name, attributes);
      break;
    case Part::kMessages:
    case Part::kFault:
      if (name == "Error") Report(attributes.Get("Description"));
      break;
    case Part::kSchema:
      break;
  }
}

void SoapReader::StartOutside(std::string_view name) {
  if (depth_ == 1 && name != "Envelope") {
    throw Failure(failure_number::kUnspecified,
                  "its outermost element is \"" + Excerpt(name) + "\", not a SOAP envelope");
  }
  if (name == "Fault") {
    part_ = Part::kFault;
    part_depth_ = depth_;
    failed_ = true;
  } else if (name == "root" && depth_ > 2) {
    root_depth_ = depth_;
    has_result_ = true;
  }
}

void SoapReader::StartInRoot(std::string_view name, const xml::Attributes& attributes) {
  part_depth_ = depth_;
  if (name == "schema") {
    part_ = Part::kSchema;
  } else if (name == "Messages" || name == "Exception" || name == "Fault") {
    part_ = Part::kMessages;
    failed_ = failed_ || name != "Messages";  // messages may be warnings alone
  } else {
    part_ = Part::kResult;
    result_.Start(depth_ - root_depth_, name, attributes);
  }
}

void SoapReader::Characters(std::string_view characters) {
  if (text_.size() + characters.size() > kLongestText) {
    throw xml::Refusal{"one of its texts is huge"};
  }
  text_ += characters;
}

void SoapReader::End(std::string_view name) {
  if (part_ == Part::kResult) result_.End(depth_ - root_depth_, name, text_);
  const bool reports = part_ == Part::kFault || part_ == Part::kMessages;
  if (reports && IsFaultText(name)) Report(text_);
  if (part_ != Part::kEnvelope && depth_ == part_depth_) {
    part_ = Part::kEnvelope;
  } else if (part_ == Part::kEnvelope && depth_ == root_depth_) {
    root_depth_ = 0;
  }
  text_.clear();
  --depth_;
}

void SoapReader::Report(std::string_view text) {
  failed_ = true;
  if (text.empty() || report_.size() > kLongestReport || ++reports_ > kMostReports) return;
  if (report_.find(text) != std::string::npos) return;  // servers repeat themselves
  if (!report_.empty()) report_ += ": ";
  report_ += text.substr(0, kLongestReport);
}

std::string SoapReader::reported() const {
  return failed_ && report_.empty() ? "an error without a description" : report_;
}

}  // namespace vok::xmla
