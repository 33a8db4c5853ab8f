#include "hosts/com/edge.h"

#include "hosts/com/interface.h"
#include "platform/failure.h"
#include "system/automation/com_ptr.h"
#include "system/automation/ole.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

void SetErrorTexts(const Failure& failure) {
  ComPtr<ICreateErrorInfo> creator;
  if (FAILED(CreateErrorInfo(creator.Receive()))) return;
  creator->SetGUID(kInterfaceId);
  creator->SetDescription(Utf16(failure.description()).data());
  creator->SetSource(Utf16(failure.source()).data());
  ComPtr<IErrorInfo> error;
  if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, error.ReceiveVoid()))) {
    SetErrorInfo(0, error.Get());
  }
}

}  // namespace

HRESULT ResultCode(int32_t number) {
  constexpr int32_t kControl = static_cast<int32_t>(0x800A0000);  // FACILITY_CONTROL
  if (number < 0) return number;
  return number > 0 && number <= 0xFFFF ? kControl | number : E_FAIL;
}

HRESULT ReportCurrentFailure() noexcept {
  try {
    const Failure failure = CurrentFailure();
    SetErrorTexts(failure);
    return ResultCode(failure.number());
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

void FillException(HRESULT code, EXCEPINFO& exception) noexcept {
  exception = {};
  exception.scode = code;
  ComPtr<IErrorInfo> error;
  if (GetErrorInfo(0, error.Receive()) != S_OK) return;
  error->GetDescription(&exception.bstrDescription);
  error->GetSource(&exception.bstrSource);
}

}  // namespace vok::windows
