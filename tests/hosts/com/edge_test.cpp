#include "hosts/com/edge.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "platform/failure.h"
#include "system/automation/bstr.h"

namespace vok::windows {
namespace {

TEST(EdgeTest, EveryExceptionEndsAsAResultCode) {
  const struct {
    void (*work)();
    HRESULT code;
    const char* description;
  } cases[] = {
      {[] { throw Failure(3265, "no such field", "ADODB"); }, static_cast<HRESULT>(0x800A0CC1),
       "no such field"},
      {[] { throw Failure(failure_number::kNoTable, "нет таблицы"); }, failure_number::kNoTable,
       "нет таблицы"},
      {[] { throw Failure(0, "no number"); }, E_FAIL, "no number"},
      {[] { throw Failure(70000, "not one of the platform's"); }, E_FAIL,
       "not one of the platform's"},
      {[] { throw std::bad_alloc(); }, static_cast<HRESULT>(0x800A0007), "Out of memory"},
      {[] { throw std::runtime_error("x"); }, static_cast<HRESULT>(0x800A0033),
       "Internal error: x"},
      {[] { throw 1; }, static_cast<HRESULT>(0x800A0033), "Internal error"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(AtEdge(c.work), c.code) << c.description;
    EXCEPINFO exception;
    FillException(c.code, exception);
    EXPECT_EQ(TakeBstr(exception.bstrDescription), c.description);
    EXPECT_NE(TakeBstr(exception.bstrSource), "") << c.description;
  }
  EXPECT_EQ(AtEdge([] {}), S_OK);
}

}  // namespace
}  // namespace vok::windows
