#include "providers/cube/xmla/answer.h"

#include "platform/failure.h"
#include "platform/shown_text.h"
#include "providers/cube/xmla/http_failure.h"

namespace vok::xmla {
namespace {

constexpr std::size_t kKeptBytes = 2048;
constexpr std::size_t kMostPassedOver = std::size_t{1} << 20;  // bytes that are not XML
constexpr long kOk = 200;

/// Servers report faults with status 500, and with 200 as well. An answer that does not say what it
/// is may be XML.
bool MayBeXml(const HttpHead& head) {
  const std::string& type = head.content_type;
  return type.empty() || type.find("xml") != std::string::npos;
}

}  // namespace

void Answer::Take(const HttpHead& head, std::string_view piece) {
  if (beginning_.size() < kKeptBytes) {
    beginning_ += piece.substr(0, kKeptBytes - beginning_.size());
  }
  is_xml_ = MayBeXml(head) && !unreadable_;
  if (is_xml_) {
    Read(head, [&] { Parse(piece, false); });
  } else if ((passed_over_ += piece.size()) > kMostPassedOver) {
    throw AnswerFailure(head, beginning_, address_);
  }
}

void Answer::Finish(const HttpHead& head) {
  bool whole = false;
  if (is_xml_ && !unreadable_) {
    Read(head, [&] { whole = Parse({}, true); });
  }
  CheckReport();
  if (head.status != kOk || !is_xml_) throw AnswerFailure(head, beginning_, address_);
  if (!whole) throw CutShortFailure(beginning_, address_);
  if (!soap_.has_result()) throw Unreadable(head, "it holds neither a result nor a failure");
  Read(head, [&] { result_.Finish(); });
}

/// False when the XML is not at its end.
bool Answer::Parse(std::string_view piece, bool last) {
  const auto fault = xml_.Read(piece, last);
  if (fault && !fault->ended_early) {
    throw Failure(failure_number::kUnspecified, fault->InLine());
  }
  return !fault;
}

/// The page of an error that is not XML tells less than its status does.
void Answer::Read(const HttpHead& head, const std::function<void()>& step) {
  try {
    step();
  } catch (const Failure& failure) {
    if (head.status == kOk) throw Unreadable(head, failure.description());
    unreadable_ = true;
  }
}

Failure Answer::Unreadable(const HttpHead& head, const std::string& why) const {
  return ContentFailure(head, why, beginning_, address_);
}

void Answer::CheckReport() const {
  const std::string words = soap_.reported();
  if (words.empty()) return;
  throw Failure(report_number_, "The cube server " + address_ + " reports: " + OneLine(words));
}

}  // namespace vok::xmla
