#include "providers/database/ado/obj_rs.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/failures.h"

namespace vok::windows {
namespace {

TEST(ObjRs, NothingIsOpenedWithoutAConnection) {
  const objRs store;
  std::unique_ptr<AdoRows> kept;
  const std::function<void()> calls[] = {[&] { store.GetRs(); }, [&] { store.GetRsReadOnly(); },
                                         [&] { store.GetrsOlap(kept); },
                                         [&] { store.RunCommand(); }};
  for (const auto& call : calls) {
    const Failure failure = test::FailureOf(call);
    EXPECT_EQ(failure.number(), -2147221406);
    EXPECT_EQ(failure.source() + ": " + failure.description(), "GetRs: No valid Connection");
  }
}

}  // namespace
}  // namespace vok::windows
