// Makes the component's objects for the host program.
#pragma once

#include <atomic>

#include "hosts/com/module.h"
#include "system/automation/ole.h"

namespace vok::windows {

/// Objects cannot be parts of others (no aggregation).
class ClassFactory final : public IClassFactory {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  ~ClassFactory() = default;

  ModuleHold hold_;
  std::atomic<ULONG> references_{1};
};

}  // namespace vok::windows
