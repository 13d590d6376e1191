#pragma once

namespace quorvane::server {

/// To be told of every notice of the loader, last of all who are. Gives back what the compiler's
/// run-time library took and would keep: per-thread variables of a thread that ends, and at unload
/// those of all threads, the semaphores of its locks and its reserve of memory.
void RuntimeSupportOnLoaderNotice(unsigned long reason, const void* process_ends);

}  // namespace quorvane::server
