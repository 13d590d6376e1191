#include "control/automation/error_to_hresult.h"

#include <memory>

#include "control/automation/strings.h"
#include "control/interface/identities.h"

namespace quorvane::component {
namespace {

constexpr DWORD kNumbersBase = 0x800A0000;
constexpr std::int32_t kLastNumber = 0xFFFF;

HRESULT ToResult(DWORD bits) { return static_cast<HRESULT>(bits); }

// An error object that cannot be made is left out: the result still carries the number.
void LeaveErrorObject(const RuntimeError& error) {
  ComPtr<ICreateErrorInfo> maker;
  if (FAILED(::CreateErrorInfo(maker.Receive()))) return;
  maker->SetGUID(AsGuid(identities::kPresent.interface_id));
  maker->SetSource(MutableWide(error.source));
  maker->SetDescription(MutableWide(error.description));
  const auto object = Query<IErrorInfo>(maker.Get());
  ::SetErrorInfo(0, object.Get());
}

Text TextFrom(IErrorInfo& object, HRESULT (STDMETHODCALLTYPE IErrorInfo::*part)(BSTR*)) {
  BSTR string = nullptr;
  if (FAILED((object.*part)(&string))) return {};
  const std::unique_ptr<OLECHAR, decltype(&::SysFreeString)> owned(string, ::SysFreeString);
  return FromBstr(string);
}

}  // namespace

HRESULT ResultOf(std::int32_t error_number) {
  if (error_number < 0) return error_number;
  if (error_number == 0 || error_number > kLastNumber) return E_FAIL;
  return ToResult(kNumbersBase + static_cast<DWORD>(error_number));
}

std::int32_t NumberOf(HRESULT failure) {
  const auto bits = static_cast<DWORD>(failure);
  if ((bits & ~static_cast<DWORD>(kLastNumber)) == kNumbersBase) return HRESULT_CODE(failure);
  switch (failure) {
    case DISP_E_OVERFLOW:
      return ErrorNumber::kOverflow;
    case DISP_E_TYPEMISMATCH:
      return ErrorNumber::kTypeMismatch;
    case E_OUTOFMEMORY:
      return ErrorNumber::kOutOfMemory;
    default:
      return failure;
  }
}

void RaiseFailedCall(HRESULT failure) { Raise(NumberOf(failure)); }

RuntimeError FailedCall(HRESULT failure) {
  const std::int32_t number = NumberOf(failure);
  RuntimeError error{number, {}, StandardDescription(number)};
  ComPtr<IErrorInfo> object;
  if (::GetErrorInfo(0, object.Receive()) != S_OK) return error;
  error.source = TextFrom(*object.Get(), &IErrorInfo::GetSource);
  const Text description = TextFrom(*object.Get(), &IErrorInfo::GetDescription);
  if (!description.Characters().empty()) error.description = description;
  return error;
}

HRESULT CurrentFailure() noexcept {
  try {
    const std::int32_t number = CurrentRuntimeError().number;
    return number == ErrorNumber::kOutOfMemory ? E_OUTOFMEMORY : ResultOf(number);
  } catch (...) {  // not even the error could be copied
    return E_OUTOFMEMORY;
  }
}

HRESULT CurrentMemberFailure() noexcept {
  try {
    const RuntimeError error = CurrentRuntimeError();
    LeaveErrorObject(error);
    return ResultOf(error.number);
  } catch (...) {
    return ResultOf(ErrorNumber::kOutOfMemory);
  }
}

}  // namespace quorvane::component
