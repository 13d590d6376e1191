#include "platform/screen.h"

#include "platform/windows/os_headers.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

class WindowsScreen final : public Screen {
 public:
  // The pointer keeps the shape until the thread answers the next question of the system about it,
  // which it does not while it is busy. A desktop without pointers is no failure.
  void SetMousePointer(std::int16_t shape) override {
    if (shape != kDefaultPointer && shape != kHourglass) Raise(ErrorNumber::kInvalidProcedureCall);
    ::SetCursor(::LoadCursorW(nullptr, shape == kHourglass ? IDC_WAIT : IDC_ARROW));
  }
};

}  // namespace

Screen& screen() noexcept {
  static WindowsScreen instance;
  return instance;
}

}  // namespace quorvane
