#include "hosts/com/invoke.h"

#include <array>
#include <span>

#include "hosts/com/by_reference.h"
#include "hosts/com/edge.h"

namespace vok::windows {
namespace {

constexpr std::size_t kMostParameters = 3;
using Arguments = std::array<ByReference, kMostParameters>;

struct Member {
  DISPID id;
  std::size_t count;
  std::array<VARTYPE, kMostParameters> parameters;
  HRESULT (*call)(_clMe&, Arguments&, VARIANT& result);
};

const Member kMembers[] = {
    {1,
     0,
     {},
     [](_clMe& me, Arguments&, VARIANT& result) {
       result.vt = VT_BSTR;
       return me.get_Version(&result.bstrVal);
     }},
    {2,
     2,
     {VT_I4, VT_BSTR},
     [](_clMe& me, Arguments& a, VARIANT& result) {
       return me.ShowQCform(&a[0].value().lVal, &a[1].value().bstrVal, &result);
     }},
    {3,
     3,
     {VT_BSTR, VT_BSTR, VT_BSTR},
     [](_clMe& me, Arguments& a, VARIANT& result) {
       return me.RunQuery(&a[0].value().bstrVal, &a[1].value().bstrVal, &a[2].value().bstrVal,
                          &result);
     }},
    {4,
     2,
     {VT_VARIANT, VT_BSTR},
     [](_clMe& me, Arguments& a, VARIANT& result) {
       result.vt = VT_I4;
       return me.GetSetNames(&a[0].value(), &a[1].value().bstrVal, &result.lVal);
     }},
    {5, 0, {}, [](_clMe& me, Arguments&, VARIANT& result) { return me.Qinfo(&result); }},
};

const Member* Find(const CallPlace& place) {
  // Scripting hosts read a property and call a method with the same pair of flags.
  if ((place.flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) return nullptr;
  for (const Member& member : kMembers) {
    if (member.id == place.member) return &member;
  }
  return nullptr;
}

/// Position of the parameter that the caller's argument `index` is for: named ones come first, the
/// others follow from the last to the first.
std::size_t ParameterOf(const DISPPARAMS& parameters, UINT index) {
  if (index < parameters.cNamedArgs) {
    return static_cast<std::size_t>(parameters.rgdispidNamedArgs[index]);
  }
  return parameters.cArgs - 1 - index;
}

/// The caller's argument for each parameter: every one is given, none twice.
HRESULT FindArguments(const DISPPARAMS& parameters, std::span<VARIANTARG*> found) {
  if (parameters.cArgs != found.size() || parameters.cNamedArgs > parameters.cArgs) {
    return DISP_E_BADPARAMCOUNT;
  }
  for (UINT index = 0; index < parameters.cArgs; ++index) {
    const std::size_t at = ParameterOf(parameters, index);
    if (at >= found.size() || found[at] != nullptr) return DISP_E_PARAMNOTFOUND;
    found[at] = &parameters.rgvarg[index];
  }
  return S_OK;
}

HRESULT ReadArguments(const Member& member, const DISPPARAMS& parameters, LCID locale,
                      Arguments& arguments, UINT* bad_argument) {
  std::array<VARIANTARG*, kMostParameters> found{};
  const HRESULT fits = FindArguments(parameters, std::span(found).first(member.count));
  if (FAILED(fits)) return fits;
  for (std::size_t at = 0; at < member.count; ++at) {
    const HRESULT code = arguments[at].Read(*found[at], member.parameters[at], locale);
    if (FAILED(code)) {
      if (bad_argument != nullptr) *bad_argument = static_cast<UINT>(found[at] - parameters.rgvarg);
      return code;
    }
  }
  return S_OK;
}

HRESULT WriteBack(std::span<ByReference> arguments, LCID locale) {
  HRESULT code = S_OK;
  for (ByReference& argument : arguments) {
    const HRESULT written = argument.WriteBack(locale);
    if (FAILED(written)) code = written;
  }
  return code;
}

}  // namespace

HRESULT InvokeMember(_clMe& object, const CallPlace& place, const DISPPARAMS& parameters,
                     const CallOutcome& outcome) noexcept {
  const Member* member = Find(place);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
  Arguments arguments;
  const HRESULT read =
      ReadArguments(*member, parameters, place.locale, arguments, outcome.bad_argument);
  if (FAILED(read)) return read;

  Variant result;
  SetErrorInfo(0, nullptr);
  const HRESULT called = member->call(object, arguments, *result.Get());
  if (FAILED(called)) {
    if (outcome.exception != nullptr) FillException(called, *outcome.exception);
    return DISP_E_EXCEPTION;
  }
  if (outcome.result != nullptr) *outcome.result = result.Detach();
  return WriteBack(std::span(arguments).first(member->count), place.locale);
}

}  // namespace vok::windows
