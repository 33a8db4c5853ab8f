// A value of any type as automation carries it, and the way between it and `Value`.
//
//   Value        VARIANT                  Value        VARIANT
//   empty        VT_EMPTY                 Date         VT_DATE
//   Null         VT_NULL                  text         VT_BSTR
//   bool         VT_BOOL                  CellError    VT_ERROR
//   int16_t      VT_I2                    TextArray    VT_ARRAY | VT_BSTR, from index 0
//   int32_t      VT_I4                    Int16Array   VT_ARRAY | VT_I2, from index 0
//   double       VT_R8                    Array        VT_ARRAY | VT_VARIANT, from index 0
//
// Failures: 13 for a VARIANT that no `Value` can hold (an object, an array of several dimensions),
// 7 for no memory.
#pragma once

#include <new>
#include <utility>

#include "platform/value.h"
#include "system/automation/ole.h"

namespace vok::windows {

/// Owns what it holds.
class Variant {
 public:
  Variant() { VariantInit(&variant_); }
  explicit Variant(const Value& value);
  /// Shares the object.
  explicit Variant(IDispatch* object);
  Variant(Variant&& other) noexcept : Variant() { std::swap(variant_, other.variant_); }
  Variant& operator=(Variant&& other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  ~Variant() { VariantClear(&variant_); }

  /// Takes what `variant` holds.
  static Variant Adopt(VARIANT& variant);

  VARIANT* Get() { return &variant_; }
  const VARIANT* Get() const { return &variant_; }
  /// Hands what it holds to the caller.
  VARIANT Detach();

 private:
  VARIANT variant_;
};

/// Numbers of types that `Value` has not come as the next wider one it has. A reference is
/// followed.
Value FromVariant(const VARIANT& variant);

/// Access to the elements of a safe array, for the life of this object. `Element` is the array's
/// own type of element.
template <typename Element>
class ArrayAccess {
 public:
  explicit ArrayAccess(SAFEARRAY* array) : array_(array) {
    if (FAILED(SafeArrayAccessData(array_, reinterpret_cast<void**>(&elements_)))) {
      throw std::bad_alloc();
    }
  }
  ArrayAccess(const ArrayAccess&) = delete;
  ArrayAccess& operator=(const ArrayAccess&) = delete;
  ~ArrayAccess() { SafeArrayUnaccessData(array_); }
  Element& operator[](std::size_t index) const { return elements_[index]; }

 private:
  SAFEARRAY* array_;
  Element* elements_ = nullptr;
};

}  // namespace vok::windows
