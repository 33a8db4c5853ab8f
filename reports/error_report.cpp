#include "reports/error_report.h"

namespace vok {
namespace {

constexpr char kLineEnd[] = "\r\n";

std::string LineUnlessEmpty(const std::string& label, const std::string& text) {
  return text.empty() ? std::string() : kLineEnd + label + text;
}

}  // namespace

std::string ErrorReportText(const Failure& failure, ErrorReport& report,
                            const ComponentInfo& component) {
  const std::string blank_line = std::string(kLineEnd) + kLineEnd;
  std::string text = "Error : " + std::to_string(failure.number()) + blank_line;
  text += failure.description();
  if (!report.Extra.empty()) text += blank_line + report.Extra;
  text += kLineEnd;
  if (failure.section() > 0) {
    text += blank_line + "Code Section : " + std::to_string(failure.section());
  }
  text += LineUnlessEmpty("Function : ", report.FunctionName);
  text += LineUnlessEmpty("Module : ", report.ModuleName);
  if (report.HelpFile.empty() && report.HelpContext != 0) report.HelpFile = component.product_name;
  return text + kLineEnd + "Source : " + failure.source();
}

void ShowErrorReport(const Host& host, const Failure& failure, ErrorReport report) {
  if (failure.number() == kQueryCancelled) return;
  host.message_boxes.Note(failure);
  MessageBox box;
  box.text = ErrorReportText(failure, report, host.component);
  box.title = host.component.product_name;
  box.icon = MessageIcon::kCritical;
  if (report.HelpContext >= 1) {
    box.help_file = report.HelpFile;
    box.help_context = report.HelpContext;
  }
  host.message_boxes.Show(box);
}

void ClearError(StatusTexts& texts) { texts = {}; }

}  // namespace vok
