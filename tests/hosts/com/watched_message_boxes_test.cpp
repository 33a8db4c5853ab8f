#include "hosts/com/watched_message_boxes.h"

#include <gmock/gmock.h>

#include "system/windows/system_header.h"
#include "tests/support/component_host.h"

namespace vok::windows {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::SizeIs;

/// While it lives, the process has a window station that shows nothing, as a service's.
class Unseen {
 public:
  Unseen() : before_(::GetProcessWindowStation()) {
    own_ = ::CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
    EXPECT_TRUE(::SetProcessWindowStation(own_));
  }
  Unseen(const Unseen&) = delete;
  Unseen& operator=(const Unseen&) = delete;
  ~Unseen() {
    ::SetProcessWindowStation(before_);
    ::CloseWindowStation(own_);
  }

 private:
  HWINSTA before_;
  HWINSTA own_;
};

TEST(WatchedMessageBoxes, WriteDownWhatNobodyWouldSee) {
  test::ComponentHost base;
  WatchedMessageBoxes boxes(base.memory.boxes, base.host);
  const struct {
    MessageBox box;
    MessageAnswer answer;
  } rows[] = {
      {{"no cube", "Report", MessageIcon::kCritical, MessageButtons::kOk, "", 0},
       MessageAnswer::kOk},
      {{"delete?", "", MessageIcon::kQuestion, MessageButtons::kYesNo, "", 0}, MessageAnswer::kNo},
      {{"save?", "", MessageIcon::kQuestion, MessageButtons::kYesNoCancel, "", 0},
       MessageAnswer::kYes},
  };
  {
    const Unseen unseen;
    for (const auto& row : rows) EXPECT_EQ(boxes.Show(row.box), row.answer) << row.box.text;
    base.memory.files.refused = {"component\\Messages.log"};
    EXPECT_EQ(boxes.Show(rows[0].box), MessageAnswer::kOk) << "also where nothing can be written";
  }
  EXPECT_THAT(base.memory.boxes.boxes, SizeIs(0));
  const std::string when = base.host.locale.DateText(base.host.clock.Now());
  EXPECT_THAT(base.memory.files.files["component\\Messages.log"],
              AllOf(HasSubstr(when + " Report: no cube\r\n"),
                    HasSubstr(when + " VokCubeQ17: delete?\r\n"), HasSubstr("save?")));
  boxes.Show(rows[0].box);
  EXPECT_THAT(base.memory.boxes.boxes, SizeIs(1)) << "where it can be seen";
}

}  // namespace
}  // namespace vok::windows
