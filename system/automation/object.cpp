#include "system/automation/object.h"

#include <algorithm>
#include <vector>

#include "platform/failure.h"
#include "system/automation/bstr.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

constexpr int32_t kObjectRequired = 424;
constexpr int32_t kCannotCreate = 429;
constexpr int32_t kNoSuchMember = 438;

constexpr struct {
  HRESULT code;
  int32_t number;
} kDispatchCodes[] = {
    {DISP_E_UNKNOWNNAME, kNoSuchMember},
    {DISP_E_MEMBERNOTFOUND, kNoSuchMember},
    {DISP_E_TYPEMISMATCH, failure_number::kTypeMismatch},
    {DISP_E_OVERFLOW, failure_number::kOverflow},
    {DISP_E_BADINDEX, failure_number::kSubscript},
    {DISP_E_BADPARAMCOUNT, 450},
    {DISP_E_PARAMNOTFOUND, 448},
    {E_OUTOFMEMORY, failure_number::kOutOfMemory},
};

int32_t NumberOf(HRESULT code) {
  for (const auto& known : kDispatchCodes) {
    if (known.code == code) return known.number;
  }
  const bool control = HRESULT_FACILITY(code) == FACILITY_CONTROL;
  return control ? HRESULT_CODE(code) : static_cast<int32_t>(code);
}

/// The system's own words for a code; "" when it has none.
std::string SystemText(HRESULT code) {
  wchar_t text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                static_cast<DWORD>(code), 0, text, 512, nullptr);
  while (length > 0 && text[length - 1] <= L' ') --length;
  return Utf8({text, length});
}

std::string Hexadecimal(HRESULT code) {
  wchar_t text[16];
  wsprintfW(text, L"0x%08X", static_cast<unsigned>(code));
  return Utf8(text);
}

/// What a program in another process answers while somebody edits or answers something in it.
bool IsBusy(HRESULT code) {
  constexpr auto kEditing = static_cast<HRESULT>(0x800AC472);
  return code == RPC_E_CALL_REJECTED || code == RPC_E_SERVERCALL_RETRYLATER || code == kEditing;
}

std::string CodeText(HRESULT code) {
  const std::string words = SystemText(code);
  std::string text =
      words.empty() ? "error " + Hexadecimal(code) : words + " (" + Hexadecimal(code) + ")";
  if (IsBusy(code)) text += ". The program had no time: end what is edited or asked in it";
  return text;
}

[[noreturn]] void ThrowCode(HRESULT code, const std::wstring& member) {
  throw Failure(NumberOf(code), "\"" + Utf8(member) + "\" failed: " + CodeText(code));
}

[[noreturn]] void ThrowException(EXCEPINFO& exception, const std::wstring& member) {
  if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  std::string description = TakeBstr(exception.bstrDescription);
  std::string source = TakeBstr(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  if (exception.wCode == 0 && description.empty()) ThrowCode(exception.scode, member);
  const int32_t number = exception.wCode != 0 ? exception.wCode : NumberOf(exception.scode);
  if (description.empty()) description = "\"" + Utf8(member) + "\" failed";
  throw Failure(number, std::move(description), std::move(source));
}

/// Calls mean the same in every country: some programs know their names and formats in no other
/// language than this one.
constexpr LCID kEnglish = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

/// Until the program has time, 30 seconds at the most.
template <typename Call>
HRESULT Patiently(Call call) {
  constexpr ULONGLONG kPatience = 30'000;
  constexpr DWORD kPause = 100;
  const ULONGLONG start = GetTickCount64();
  HRESULT code = call();
  while (IsBusy(code) && GetTickCount64() - start < kPatience) {
    Sleep(kPause);
    code = call();
  }
  return code;
}

HRESULT ClassOf(const std::string& prog_id, CLSID& class_id) {
  return CLSIDFromProgID(Utf16(prog_id).c_str(), &class_id);
}

}  // namespace

DISPID Member::IdFor(IDispatch& object) const {
  if (!id_) {
    auto* name = const_cast<wchar_t*>(name_.c_str());
    DISPID id = DISPID_UNKNOWN;
    const HRESULT code =
        Patiently([&] { return object.GetIDsOfNames(IID_NULL, &name, 1, kEnglish, &id); });
    if (FAILED(code)) ThrowCode(code, name_);
    id_ = id;
  }
  return *id_;
}

Object Object::Create(const std::string& prog_id) {
  CLSID class_id;
  ComPtr<IDispatch> object;
  HRESULT code = ClassOf(prog_id, class_id);
  if (SUCCEEDED(code)) {
    code = CoCreateInstance(class_id, nullptr, CLSCTX_SERVER, IID_IDispatch, object.ReceiveVoid());
  }
  if (FAILED(code)) {
    throw Failure(kCannotCreate,
                  "ActiveX component can't create object: \"" + prog_id + "\": " + CodeText(code));
  }
  return Object(std::move(object));
}

Variant Object::Argument(LeftOut) {
  Variant argument;
  argument.Get()->vt = VT_ERROR;
  argument.Get()->scode = DISP_E_PARAMNOTFOUND;
  return argument;
}

Object Object::ObjectIn(const Variant& variant, const Member& member) {
  const VARIANT& held = *variant.Get();
  if (held.vt != VT_DISPATCH || held.pdispVal == nullptr) {
    throw Failure(kObjectRequired, "Object required: \"" + Utf8(member.name()) + "\" gave none");
  }
  return Object(ComPtr<IDispatch>(held.pdispVal));
}

void Object::Put(const Member& member, const Value& value) const { Put(member, Variant(value)); }

void Object::Put(const Member& member, Variant value) const {
  Invoke(member, DISPATCH_PROPERTYPUT, std::span(&value, 1));
}

void Object::PutObject(const Member& member, const Object& object) const {
  Variant reference(object.Get());
  Invoke(member, DISPATCH_PROPERTYPUTREF, std::span(&reference, 1));
}

Variant Object::Invoke(const Member& member, WORD flags, std::span<Variant> arguments) const {
  if (!object_) {
    throw Failure(failure_number::kObjectNotSet,
                  "Object variable not set: \"" + Utf8(member.name()) + "\" was called");
  }
  // Arguments go from the last to the first.
  std::vector<VARIANT> reversed;
  for (Variant& argument : arguments) reversed.push_back(*argument.Get());
  std::reverse(reversed.begin(), reversed.end());
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  DISPID put = DISPID_PROPERTYPUT;
  if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
    parameters.rgdispidNamedArgs = &put;
    parameters.cNamedArgs = 1;
  }
  Variant result;
  EXCEPINFO exception{};
  const DISPID id = member.IdFor(*object_.Get());
  const HRESULT code = Patiently([&] {
    return object_->Invoke(id, IID_NULL, kEnglish, flags, &parameters, result.Get(), &exception,
                           nullptr);
  });
  if (code == DISP_E_EXCEPTION) ThrowException(exception, member.name());
  if (FAILED(code)) ThrowCode(code, member.name());
  return result;
}

bool IsRegistered(const std::string& prog_id) {
  CLSID class_id;
  return SUCCEEDED(ClassOf(prog_id, class_id));
}

bool HasInProcessServer(const std::string& prog_id) {
  CLSID class_id;
  if (FAILED(ClassOf(prog_id, class_id))) return false;
  wchar_t text[39];
  StringFromGUID2(class_id, text, 39);
  const std::wstring key = L"CLSID\\" + std::wstring(text) + L"\\InprocServer32";
  LONG size = 0;
  return RegQueryValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, &size) == ERROR_SUCCESS;
}

}  // namespace vok::windows
