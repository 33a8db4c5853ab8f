// The automation object: `_clMe` for early-bound callers, `IDispatch` for all others.
//
// It has no state except its count of references. Calls of several apartments take turns; one that
// waits lets the messages of its apartment go on (component/call_turns.h). Parameters are in and
// out: a text or number that a member changed is handed back, by the kind of reference that the
// caller gave. Failures leave a member as result codes with error information (edge.h).
#pragma once

#include <atomic>

#include "component/cl_me.h"
#include "hosts/com/interface.h"
#include "hosts/com/module.h"
#include "system/automation/com_ptr.h"

namespace vok::windows {

class ClMeObject final : public _clMe, public ISupportErrorInfo {
 public:
  /// `me` outlives the object. The new object has one reference, the caller's.
  explicit ClMeObject(clMe& me) : me_(me) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID id, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* bad_argument) override;

  HRESULT STDMETHODCALLTYPE get_Version(BSTR* result) override;
  HRESULT STDMETHODCALLTYPE ShowQCform(LONG* Error, BSTR* DataBaseFileName,
                                       VARIANT* result) override;
  HRESULT STDMETHODCALLTYPE RunQuery(BSTR* CubeSetName, BSTR* PeriodsName, BSTR* OutputPath,
                                     VARIANT* result) override;
  HRESULT STDMETHODCALLTYPE GetSetNames(VARIANT* sName, BSTR* TableName, LONG* result) override;
  HRESULT STDMETHODCALLTYPE Qinfo(VARIANT* result) override;

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override;

 private:
  ~ClMeObject() = default;
  HRESULT LoadTypeInfo();

  clMe& me_;
  ModuleHold hold_;
  std::atomic<ULONG> references_{1};
  ComPtr<ITypeInfo> type_info_;
};

}  // namespace vok::windows
