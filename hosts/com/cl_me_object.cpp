#include "hosts/com/cl_me_object.h"

#include <string>
#include <utility>

#include "hosts/com/edge.h"
#include "hosts/com/invoke.h"
#include "system/automation/bstr.h"
#include "system/automation/variant.h"

namespace vok::windows {
namespace {

/// A text of the caller's, worked on as UTF-8 and handed back when it was changed.
class TextParameter {
 public:
  explicit TextParameter(BSTR* slot) : text(FromBstr(*slot)), slot_(slot), before_(text) {}

  void HandBack() {
    if (text == before_) return;
    BSTR changed = NewBstr(text);
    SysFreeString(std::exchange(*slot_, changed));
  }

  std::string text;

 private:
  BSTR* slot_;
  std::string before_;
};

template <typename... Pointers>
bool AnyIsNull(Pointers... pointers) {
  return ((pointers == nullptr) || ...);
}

}  // namespace

HRESULT ClMeObject::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (id == IID_IUnknown || id == IID_IDispatch || id == kInterfaceId) {
    *object = static_cast<_clMe*>(this);
  } else if (id == IID_ISupportErrorInfo) {
    *object = static_cast<ISupportErrorInfo*>(this);
  } else {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

ULONG ClMeObject::AddRef() { return ++references_; }

ULONG ClMeObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ClMeObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT ClMeObject::LoadTypeInfo() {
  if (type_info_) return S_OK;
  ComPtr<ITypeLib> library;
  const HRESULT loaded = LoadTypeLibEx(ModuleFile().c_str(), REGKIND_NONE, library.Receive());
  if (FAILED(loaded)) return loaded;
  return library->GetTypeInfoOfGuid(kInterfaceId, type_info_.Receive());
}

HRESULT ClMeObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  const HRESULT loaded = LoadTypeInfo();
  if (SUCCEEDED(loaded)) *info = ComPtr<ITypeInfo>(type_info_).Detach();
  return loaded;
}

HRESULT ClMeObject::GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (AnyIsNull(names, ids) || count == 0) return E_INVALIDARG;
  const HRESULT loaded = LoadTypeInfo();
  return FAILED(loaded) ? loaded : type_info_->GetIDsOfNames(names, count, ids);
}

HRESULT ClMeObject::Invoke(DISPID member, REFIID id, LCID locale, WORD flags,
                           DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                           UINT* bad_argument) {
  if (id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (parameters == nullptr) return E_INVALIDARG;
  const CallPlace place{member, flags, locale};
  return InvokeMember(*this, place, *parameters, {result, exception, bad_argument});
}

HRESULT ClMeObject::get_Version(BSTR* result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return AtEdge([&] { *result = NewBstr(me_.Version()); });
}

HRESULT ClMeObject::ShowQCform(LONG* Error, BSTR* DataBaseFileName, VARIANT* result) {
  if (AnyIsNull(Error, DataBaseFileName, result)) return E_POINTER;
  VariantInit(result);
  return AtEdge([&] {
    TextParameter file(DataBaseFileName);
    int32_t error = *Error;
    Variant value(me_.ShowQCform(error, file.text));
    *Error = error;
    file.HandBack();
    *result = value.Detach();
  });
}

HRESULT ClMeObject::RunQuery(BSTR* CubeSetName, BSTR* PeriodsName, BSTR* OutputPath,
                             VARIANT* result) {
  if (AnyIsNull(CubeSetName, PeriodsName, OutputPath, result)) return E_POINTER;
  VariantInit(result);
  return AtEdge([&] {
    TextParameter cube(CubeSetName), periods(PeriodsName), output(OutputPath);
    Variant value(me_.RunQuery(cube.text, periods.text, output.text));
    for (TextParameter* parameter : {&cube, &periods, &output}) parameter->HandBack();
    *result = value.Detach();
  });
}

HRESULT ClMeObject::GetSetNames(VARIANT* sName, BSTR* TableName, LONG* result) {
  if (AnyIsNull(sName, TableName, result)) return E_POINTER;
  *result = 0;
  return AtEdge([&] {
    TextParameter table(TableName);
    Value names;
    *result = me_.GetSetNames(names, table.text);
    Variant array(names);
    table.HandBack();
    VariantClear(sName);
    *sName = array.Detach();
  });
}

HRESULT ClMeObject::Qinfo(VARIANT* result) {
  if (result == nullptr) return E_POINTER;
  VariantInit(result);
  return AtEdge([&] { *result = Variant(me_.Qinfo()).Detach(); });
}

HRESULT ClMeObject::InterfaceSupportsErrorInfo(REFIID id) {
  return id == kInterfaceId || id == IID_IDispatch ? S_OK : S_FALSE;
}

}  // namespace vok::windows
