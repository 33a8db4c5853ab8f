// Where this process runs.
#pragma once

namespace vok::windows {

/// Whether a person can see the windows of this process. Nobody sees those of a service or of a
/// task that runs while its user is away: they would wait for an answer for ever.
bool HasVisibleScreen();

}  // namespace vok::windows
