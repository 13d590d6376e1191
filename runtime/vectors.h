#pragma once

/// Stands before a function that works on vectors of 16 bytes. It is to be called only where
/// HasVectors(), and whoever does so keeps a plain form beside it.
#if defined(__i386__)
#define QUORVANE_VECTORS [[gnu::target("sse2")]]
#else
#define QUORVANE_VECTORS
#endif

namespace quorvane {

/// Whether the processor has them. All of 64 bits have. In 32 bits those from the year 2001 on
/// (SSE2); the module runs on older ones, too, down to the Pentium Pro, for which it is compiled.
[[nodiscard]] bool HasVectors() noexcept;

}  // namespace quorvane
