#pragma once

#include <cstdint>
#include <string>

namespace quorvane::benchmarks {

/// Asks the platform for the code of each character by a call of its own, and does nothing with the
/// answers but add them up.
[[nodiscard]] std::uint32_t CallCodePageForEachCharacter(const std::u16string& text);

}  // namespace quorvane::benchmarks
