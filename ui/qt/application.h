// The process's QApplication.
#pragma once

namespace vok::qt {

/// Makes it where the host program has none, and keeps it then: Qt bears but one in a process's
/// life. Failures as those of `QtDesktop`.
void NeedApplication();

}  // namespace vok::qt
