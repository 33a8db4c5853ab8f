// An answer as it arrives: XML goes to its reader piece by piece, of anything else the beginning is
// kept to be shown.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "platform/http.h"
#include "providers/cube/xmla/soap_reader.h"

namespace vok::xmla {

inline constexpr std::size_t kDeepestElement = 64;

class Answer : public HttpBody {
 public:
  /// `address` is for failures; what the server reports has the number `report_number`. `result`
  /// outlives the answer.
  Answer(std::string address, int32_t report_number, ResultReader& result)
      : address_(std::move(address)), report_number_(report_number), result_(result) {}

  void Take(const HttpHead& head, std::string_view piece) override;
  std::string_view beginning() const override { return beginning_; }
  /// The answer is there whole. Failures as `Server` has them.
  void Finish(const HttpHead& head);

 private:
  void Read(const HttpHead& head, const std::function<void()>& step);
  bool Parse(std::string_view piece, bool last);
  Failure Unreadable(const HttpHead& head, const std::string& why) const;
  void CheckReport() const;

  std::string address_;
  int32_t report_number_;
  ResultReader& result_;
  SoapReader soap_{result_};
  xml::Parser xml_{soap_, kDeepestElement};
  std::string beginning_;
  std::size_t passed_over_ = 0;
  bool is_xml_ = false;
  bool unreadable_ = false;  // an answer of a failed status that is not XML
};

}  // namespace vok::xmla
