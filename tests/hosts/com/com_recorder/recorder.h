// An automation object that answers to every name and writes down every call.
#pragma once

#include <atomic>
#include <string>

#include "system/automation/ole.h"

namespace vok::com_recorder {

class Recorder final : public IDispatch {
 public:
  /// `path` is how the object was come by: its class, or the calls that led to it. A new object
  /// has one reference, the caller's.
  Recorder(std::string path, bool is_root);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override;

  /// "Nothing" for no object.
  static std::string PathOf(IDispatch* object);
  /// Objects that are there now.
  static long Count();

 private:
  ~Recorder();
  void Answer(const std::string& call, VARIANT* result);

  std::string path_;
  bool is_root_;
  std::atomic<ULONG> references_{1};
};

}  // namespace vok::com_recorder
