#pragma once

#include <string>

namespace quorvane::programs {

/// The system's text for one of its codes (an HRESULT also), in UTF-8 and without a line end;
/// "code 0x80040154" when it has none.
[[nodiscard]] std::string SystemMessage(unsigned long code);

}  // namespace quorvane::programs
