#include "system/automation/variant.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "system/automation/bstr.h"
#include "tests/support/failures.h"

namespace vok::windows {
namespace {

TEST(VariantTest, ValuesKeepTheirTypesBothWays) {
  const struct {
    Value value;
    int type;
  } cases[] = {
      {Value(), VT_EMPTY},
      {Null{}, VT_NULL},
      {true, VT_BOOL},
      {false, VT_BOOL},
      {int16_t{-32768}, VT_I2},
      {int32_t{-2147483647 - 1}, VT_I4},
      {2.5, VT_R8},
      {Date{45000.25}, VT_DATE},
      {"", VT_BSTR},
      {std::string("a\0\xD7\xA9\xF0\x9F\x98\x80", 8), VT_BSTR},
      {Value::TextArray{}, VT_ARRAY | VT_BSTR},
      {Value::TextArray{"", "Ж"}, VT_ARRAY | VT_BSTR},
      {Value::Int16Array{0, -1}, VT_ARRAY | VT_I2},
      {Value::Array{Value(), "x", int32_t{7}, Value::Array{Null{}}}, VT_ARRAY | VT_VARIANT},
  };
  for (const auto& c : cases) {
    const Variant variant(c.value);
    EXPECT_EQ(variant.Get()->vt, c.type);
    EXPECT_EQ(FromVariant(*variant.Get()), c.value) << c.type;

    if ((c.type & VT_ARRAY) != 0) {
      LONG first = -1;
      EXPECT_EQ(SafeArrayGetLBound(variant.Get()->parray, 1, &first), S_OK);
      EXPECT_EQ(first, 0);
    }
    VARIANT reference;
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = const_cast<VARIANT*>(variant.Get());
    EXPECT_EQ(FromVariant(reference), c.value) << "by reference " << c.type;
  }
}

TEST(VariantTest, OtherNumbersBecomeTheNextWider) {
  const struct {
    VARTYPE type;
    Value value;
  } cases[] = {{VT_UI1, int16_t{7}}, {VT_I1, int16_t{7}}, {VT_UI2, int32_t{7}},
               {VT_INT, int32_t{7}}, {VT_UI4, 7.0},       {VT_R4, 7.0},
               {VT_CY, 7.0},         {VT_DECIMAL, 7.0},   {VT_I8, 7.0}};
  for (const auto& c : cases) {
    Variant seven(int16_t{7});
    ASSERT_EQ(VariantChangeType(seven.Get(), seven.Get(), 0, c.type), S_OK) << c.type;
    EXPECT_EQ(FromVariant(*seven.Get()), c.value) << c.type;
  }
}

TEST(VariantTest, WhatNoValueHoldsIsATypeMismatch) {
  VARIANT object;
  object.vt = VT_DISPATCH;
  object.pdispVal = nullptr;
  SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 0}};
  Variant square;
  square.Get()->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  square.Get()->vt = VT_ARRAY | VT_VARIANT;
  for (const VARIANT* variant : std::initializer_list<const VARIANT*>{&object, square.Get()}) {
    EXPECT_EQ(test::NumberOf([&] { FromVariant(*variant); }), failure_number::kTypeMismatch);
  }
}

}  // namespace
}  // namespace vok::windows
