#include "tests/hosts/com/com_recorder/recorder.h"

#include <vector>

#include "platform/failure.h"
#include "system/automation/bstr.h"
#include "system/windows/utf16.h"
#include "tests/hosts/com/com_recorder/script.h"

namespace vok::com_recorder {
namespace {

constexpr LCID kEnglish = 1033;

std::atomic<long> objects{0};

/// The number of a name is its place here.
std::vector<std::string>& Names() {
  static std::vector<std::string> names;
  return names;
}

DISPID NumberOf(const std::string& name) {
  auto& names = Names();
  for (std::size_t index = 0; index < names.size(); ++index) {
    if (names[index] == name) return static_cast<DISPID>(index);
  }
  names.push_back(name);
  return static_cast<DISPID>(names.size() - 1);
}

std::string ShownArguments(const DISPPARAMS& parameters) {
  std::string text;
  for (UINT index = parameters.cArgs; index > 0; --index) {
    text += (text.empty() ? "" : ", ") + Shown(parameters.rgvarg[index - 1]);
  }
  return text.empty() ? text : "(" + text + ")";
}

}  // namespace

Recorder::Recorder(std::string path, bool is_root) : path_(std::move(path)), is_root_(is_root) {
  ++objects;
  if (is_root_) WriteDown("new " + path_);
}

Recorder::~Recorder() {
  --objects;
  if (is_root_) WriteDown("release " + path_);
}

HRESULT Recorder::QueryInterface(REFIID id, void** object) {
  *object = nullptr;
  if (id != IID_IUnknown && id != IID_IDispatch) return E_NOINTERFACE;
  *object = this;
  AddRef();
  return S_OK;
}

ULONG Recorder::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT Recorder::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT Recorder::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  for (UINT index = 0; index < count; ++index) {
    ids[index] = NumberOf(windows::Utf8(names[index]));
  }
  return S_OK;
}

void Recorder::Answer(const std::string& call, VARIANT* result) {
  auto answer = AnswerTo(call);
  if (result == nullptr) return;
  if (answer) {
    *result = answer->Detach();
  } else {
    result->vt = VT_DISPATCH;
    result->pdispVal = new Recorder(call, false);
  }
}

HRESULT Recorder::Invoke(DISPID member, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters,
                         VARIANT* result, EXCEPINFO* exception, UINT*) {
  const std::string name = path_ + "." + Names().at(static_cast<std::size_t>(member));
  constexpr HRESULT kNoTypeLibraryOfThatLanguage = static_cast<HRESULT>(0x80028018);
  if (locale != kEnglish) return kNoTypeLibraryOfThatLanguage;
  if (IsRejected(name)) return RPC_E_CALL_REJECTED;
  try {
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
      const bool by_reference = (flags & DISPATCH_PROPERTYPUTREF) != 0;
      WriteDown(name + (by_reference ? " is " : " = ") + Shown(parameters->rgvarg[0]));
      AnswerTo(name + " =");
      if (!by_reference) Assign(name, parameters->rgvarg[0]);
    } else {
      const std::string call = name + ShownArguments(*parameters);
      WriteDown(call);
      Answer(call, result);
    }
    return S_OK;
  } catch (const Failure& failure) {
    *exception = {};
    const bool is_code = failure.number() < 0;
    exception->scode =
        is_code ? failure.number() : static_cast<SCODE>(0x800A0000 | failure.number());
    exception->bstrDescription = windows::NewBstr(failure.description());
    exception->bstrSource = windows::NewBstr(failure.source());
    return DISP_E_EXCEPTION;
  }
}

std::string Recorder::PathOf(IDispatch* object) {
  const auto* recorder = dynamic_cast<Recorder*>(object);
  return recorder == nullptr ? "Nothing" : "<" + recorder->path_ + ">";
}

long Recorder::Count() { return objects; }

}  // namespace vok::com_recorder
