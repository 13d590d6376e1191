#include "platform/screen.h"

#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

// Programs here run in a terminal, which has no pointer of theirs.
class PosixScreen final : public Screen {
 public:
  void SetMousePointer(std::int16_t shape) override {
    if (shape != kDefaultPointer && shape != kHourglass) Raise(ErrorNumber::kInvalidProcedureCall);
  }
};

}  // namespace

Screen& screen() noexcept {
  static PosixScreen instance;
  return instance;
}

}  // namespace quorvane
