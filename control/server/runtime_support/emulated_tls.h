#pragma once

namespace quorvane::server {

/// Gives back the compiler's per-thread variables (the exception handling has some) of this thread.
void EndEmulatedTlsOfThread();

/// Gives back those of all threads, and the module's TLS index. No other thread may be in the
/// module.
void EndEmulatedTls();

}  // namespace quorvane::server
