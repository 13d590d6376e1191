#pragma once

#include "runtime/text.h"

namespace quorvane {

/// The running module: the library or program that holds this code, not the process that loaded it.
class App {
 public:
  virtual ~App() = default;

  /// The directory of the module's file; it ends in a separator only when it is a root directory.
  [[nodiscard]] virtual Text Path() = 0;
  /// The module's file name without directory and extension.
  [[nodiscard]] virtual Text EXEName() = 0;
};

/// The platform's own, on Linux its stand-in. It lives as long as the program.
[[nodiscard]] App& app() noexcept;

}  // namespace quorvane
