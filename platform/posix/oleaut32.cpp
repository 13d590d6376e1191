#include "platform/posix/numeric_text.h"

namespace quorvane {

Oleaut32& oleaut32() noexcept {
  static NumericText instance;
  return instance;
}

}  // namespace quorvane
