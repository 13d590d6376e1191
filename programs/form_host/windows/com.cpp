#include "programs/form_host/windows/com.h"

#include "control/automation/error_to_hresult.h"
#include "programs/common/windows/system_message.h"
#include "runtime/runtime_error.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr std::int32_t kNoSuchMember = 438;

std::int32_t NumberOf(HRESULT result) {
  const bool is_absent = result == DISP_E_UNKNOWNNAME || result == DISP_E_MEMBERNOTFOUND;
  return is_absent ? kNoSuchMember : component::NumberOf(result);
}

}  // namespace

void Check(HRESULT result, const Text& source) {
  if (FAILED(result)) RaiseResult(result, source);
}

void RaiseResult(HRESULT result, const Text& source) {
  const std::int32_t number = NumberOf(result);
  if (number > 0) Raise(number, source);
  throw RuntimeError{number, source, FromUtf8(SystemMessage(static_cast<unsigned long>(result)))};
}

}  // namespace quorvane::programs
