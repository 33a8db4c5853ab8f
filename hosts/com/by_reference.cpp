#include "hosts/com/by_reference.h"

#include <cstring>
#include <utility>

namespace vok::windows {
namespace {

/// Bytes of a plain value of the type; 0 for a type that no variable of a host program has.
std::size_t SizeOf(VARTYPE type) {
  if ((type & VT_ARRAY) != 0) return sizeof(SAFEARRAY*);
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_I8:
    case VT_UI8:
      return 8;
    case VT_BSTR:
      return sizeof(BSTR);
    default:
      return 0;
  }
}

/// The VARIANT that a reference of a scripting host leads to; nullptr for another reference.
VARIANT* ReferredVariant(const VARIANTARG& argument) {
  return argument.vt == (VT_BYREF | VT_VARIANT) ? argument.pvarVal : nullptr;
}

/// Whether a variable of that type can hold what a member hands back in a parameter of the other:
/// in one of any type it is an array.
bool CanTake(VARTYPE variable, VARTYPE parameter) {
  if (parameter == VT_VARIANT) return variable == (VT_ARRAY | VT_VARIANT);
  return SizeOf(variable) != 0;
}

/// The reference at the end of the caller's: to a plain variable, or to a VARIANT that holds none.
VARIANTARG& LastReference(VARIANTARG& argument) {
  VARIANTARG* reference = &argument;
  for (VARIANT* next = ReferredVariant(*reference); next != nullptr && (next->vt & VT_BYREF) != 0;
       next = ReferredVariant(*reference)) {
    reference = next;
  }
  return *reference;
}

/// Frees what a plain variable of the type holds and moves `value` there.
HRESULT Assign(const VARIANTARG& reference, VARTYPE type, Variant value) {
  const std::size_t size = SizeOf(type);
  if (size == 0) return DISP_E_BADVARTYPE;
  VARIANT old;
  VariantInit(&old);
  std::memcpy(&old.llVal, reference.byref, size);
  old.vt = type;
  const VARIANT held = value.Detach();
  std::memcpy(reference.byref, &held.llVal, size);
  return VariantClear(&old);
}

}  // namespace

HRESULT ByReference::Read(VARIANTARG& argument, VARTYPE type, LCID locale) {
  argument_ = &argument;
  type_ = type;
  const VARIANTARG& last = LastReference(argument);
  const bool is_plain = (last.vt & VT_BYREF) != 0 && ReferredVariant(last) == nullptr;
  if (is_plain && !CanTake(static_cast<VARTYPE>(last.vt & ~VT_BYREF), type)) {
    return DISP_E_TYPEMISMATCH;
  }
  HRESULT code = VariantCopyInd(value_.Get(), &argument);
  if (FAILED(code) || type == VT_VARIANT) return code;
  code = VariantChangeTypeEx(value_.Get(), value_.Get(), locale, 0, type);
  return FAILED(code) ? code : VariantCopy(before_.Get(), value_.Get());
}

bool ByReference::IsChanged() const {
  const VARIANT& now = *value_.Get();
  const VARIANT& before = *before_.Get();
  if (type_ == VT_I4) return now.lVal != before.lVal;
  if (type_ != VT_BSTR) return true;
  const UINT bytes = SysStringByteLen(now.bstrVal);
  return bytes != SysStringByteLen(before.bstrVal) ||
         std::memcmp(now.bstrVal, before.bstrVal, bytes) != 0;
}

HRESULT ByReference::WriteBack(LCID locale) {
  if ((argument_->vt & VT_BYREF) == 0 || !IsChanged()) return S_OK;
  const VARIANTARG& last = LastReference(*argument_);
  if (VARIANT* variable = ReferredVariant(last)) {
    VariantClear(variable);
    *variable = value_.Detach();
    return S_OK;
  }
  const auto type = static_cast<VARTYPE>(last.vt & ~VT_BYREF);
  const HRESULT code = VariantChangeTypeEx(value_.Get(), value_.Get(), locale, 0, type);
  return FAILED(code) ? code : Assign(last, type, std::move(value_));
}

}  // namespace vok::windows
