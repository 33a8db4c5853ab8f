// The settings window of the component, on the screen.
#pragma once

#include <memory>

#include "component/cl_me.h"

namespace vok::windows {

/// A `QueryWindowMaker`. Message boxes of `host` must be able to come from another thread
/// (errands.h).
std::unique_ptr<QueryWindow> MakeQueryWindow(const Host& host, Publics& publics);

}  // namespace vok::windows
