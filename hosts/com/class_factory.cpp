#include "hosts/com/class_factory.h"

#include "hosts/com/cl_me_object.h"
#include "hosts/com/edge.h"
#include "hosts/com/process.h"

namespace vok::windows {
HRESULT ClassFactory::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

ULONG ClassFactory::AddRef() { return ++references_; }

ULONG ClassFactory::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  HRESULT code = S_OK;
  const HRESULT made = AtEdge([&] {
    auto* me = new ClMeObject(TheClMe());
    code = me->QueryInterface(id, object);
    me->Release();
  });
  return FAILED(made) ? made : code;
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  if (lock) {
    HoldModule();
  } else {
    ReleaseModule();
  }
  return S_OK;
}

}  // namespace vok::windows
