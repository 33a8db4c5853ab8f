#include "system/automation/variant.h"

#include <new>
#include <type_traits>

#include "platform/failure.h"
#include "system/automation/bstr.h"

namespace vok::windows {
namespace {

constexpr SCODE kValueError = static_cast<SCODE>(0x800A07DF);  // the spreadsheet's #VALUE!

/// The new array belongs to `out` before its elements are made: the owner of `out` frees them.
template <typename Element, typename Items, typename Make>
void StoreArray(VARIANT& out, VARTYPE type, const Items& items, Make make) {
  out.parray = SafeArrayCreateVector(type, 0, static_cast<ULONG>(items.size()));
  if (out.parray == nullptr) throw std::bad_alloc();
  out.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  const ArrayAccess<Element> elements(out.parray);
  for (std::size_t index = 0; index < items.size(); ++index) elements[index] = make(items[index]);
}

struct Store {
  VARIANT& out;

  void operator()(std::monostate) const {}
  void operator()(Null) const { out.vt = VT_NULL; }
  void operator()(bool value) const {
    out.vt = VT_BOOL;
    out.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  void operator()(int16_t value) const {
    out.vt = VT_I2;
    out.iVal = value;
  }
  void operator()(int32_t value) const {
    out.vt = VT_I4;
    out.lVal = value;
  }
  void operator()(double value) const {
    out.vt = VT_R8;
    out.dblVal = value;
  }
  void operator()(Date value) const {
    out.vt = VT_DATE;
    out.date = value.serial;
  }
  void operator()(const std::string& value) const {
    out.bstrVal = NewBstr(value);
    out.vt = VT_BSTR;
  }
  void operator()(const CellError&) const {
    out.vt = VT_ERROR;
    out.scode = kValueError;
  }
  void operator()(const Value::TextArray& value) const {
    StoreArray<BSTR>(out, VT_BSTR, value, [](const std::string& text) { return NewBstr(text); });
  }
  void operator()(const Value::Int16Array& value) const {
    StoreArray<SHORT>(out, VT_I2, value, [](int16_t number) { return number; });
  }
  void operator()(const Value::Array& value) const {
    StoreArray<VARIANT>(out, VT_VARIANT, value,
                        [](const Value& item) { return Variant(item).Detach(); });
  }
};

[[noreturn]] void ThrowNoValue() {
  throw Failure(failure_number::kTypeMismatch,
                "Type mismatch: an object or an array of several dimensions was given where a "
                "value is needed");
}

Value Converted(VARIANT variant) {
  Variant number;
  if (FAILED(VariantChangeType(number.Get(), &variant, 0, VT_R8))) ThrowNoValue();
  return number.Get()->dblVal;
}

/// One element of an array, in a VARIANT of its own.
Variant ElementAt(SAFEARRAY* array, VARTYPE type, LONG index) {
  Variant element;
  VARIANT& out = *element.Get();
  void* place = &out.llVal;
  if (type == VT_VARIANT) place = &out;
  if (FAILED(SafeArrayGetElement(array, &index, place))) throw std::bad_alloc();
  if (type != VT_VARIANT) out.vt = type;
  return element;
}

Value FromArray(SAFEARRAY* array) {
  if (array == nullptr) return Value::Array();
  LONG first = 0, last = -1;
  VARTYPE type = VT_EMPTY;
  if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetVartype(array, &type)) ||
      FAILED(SafeArrayGetLBound(array, 1, &first)) || FAILED(SafeArrayGetUBound(array, 1, &last))) {
    ThrowNoValue();
  }
  Value::TextArray texts;
  Value::Int16Array numbers;
  Value::Array values;
  for (LONG index = first; index <= last; ++index) {
    Value value = FromVariant(*ElementAt(array, type, index).Get());
    if (type == VT_BSTR) {
      texts.push_back(value.ToText());
    } else if (type == VT_I2) {
      numbers.push_back(value.ToInt16());
    } else {
      values.push_back(std::move(value));
    }
  }
  if (type == VT_BSTR) return texts;
  if (type == VT_I2) return numbers;
  return values;
}

Value FromError(SCODE code) {
  if (code == DISP_E_PARAMNOTFOUND) return {};
  return CellError{"Error " + std::to_string(code & 0xFFFF)};
}

Value FromPlain(const VARIANT& variant) {
  switch (variant.vt) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Null{};
    case VT_BOOL:
      return variant.boolVal != VARIANT_FALSE;
    case VT_UI1:
      return static_cast<int16_t>(variant.bVal);
    case VT_I1:
      return static_cast<int16_t>(variant.cVal);
    case VT_I2:
      return static_cast<int16_t>(variant.iVal);
    case VT_UI2:
      return static_cast<int32_t>(variant.uiVal);
    case VT_I4:
    case VT_INT:
      return static_cast<int32_t>(variant.lVal);
    case VT_DATE:
      return Date{variant.date};
    case VT_BSTR:
      return FromBstr(variant.bstrVal);
    case VT_ERROR:
      return FromError(variant.scode);
    case VT_UI4:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
      return Converted(variant);
    default:
      break;
  }
  if ((variant.vt & VT_ARRAY) == 0) ThrowNoValue();
  return FromArray(variant.parray);
}

}  // namespace

Variant::Variant(const Value& value) : Variant() { std::visit(Store{variant_}, value.storage()); }

Variant::Variant(IDispatch* object) : Variant() {
  if (object != nullptr) object->AddRef();
  variant_.vt = VT_DISPATCH;
  variant_.pdispVal = object;
}

Variant Variant::Adopt(VARIANT& variant) {
  Variant owner;
  std::swap(owner.variant_, variant);
  return owner;
}

VARIANT Variant::Detach() {
  VARIANT held = variant_;
  VariantInit(&variant_);
  return held;
}

Value FromVariant(const VARIANT& variant) {
  if ((variant.vt & VT_BYREF) == 0) return FromPlain(variant);
  VARIANT reference = variant;
  Variant copy;
  if (FAILED(VariantCopyInd(copy.Get(), &reference))) ThrowNoValue();
  return FromPlain(*copy.Get());
}

}  // namespace vok::windows
