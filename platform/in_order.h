// Work on several threads whose results come one after the other, as if one thread had done it.
#pragma once

#include <cstddef>
#include <functional>

namespace vok {

/// What is to be done with a result.
using Taking = std::function<void()>;
/// Makes a result.
using Working = std::function<Taking()>;

/// How many threads can run at once, at least 1.
unsigned ProcessorCount();

/// Does the works that `begin` gives, an empty one after the last. One thread at a time calls
/// `begin`; `threads`, of which the caller's is one, do the works; what these return is called in
/// the order of `begin`, on the caller's thread. Before the first of them is taken, two works for
/// each thread are begun at most.
///
/// A failure of one of the three comes when all before it is taken, and nothing more is begun then.
/// A thread that the system does not start is done without.
void RunInOrder(unsigned threads, const std::function<Working()>& begin);

/// `work` of every number below `count`, in no order.
void InParallel(unsigned threads, std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace vok
