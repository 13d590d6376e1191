#pragma once

namespace quorvane::server {

/// Closes the semaphores that the compiler's run-time library made in the module's life. To be
/// called when the module leaves memory and no other thread is in it.
void CloseSemaphores();

}  // namespace quorvane::server
