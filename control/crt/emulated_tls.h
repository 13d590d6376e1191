#pragma once

namespace quorvane::component {

/// To be told of every notice of the loader, last of all who are: gives back the compiler's
/// per-thread variables (the exception handling has some) of a thread that ends, and at unload
/// those of all threads and the module's TLS index.
void EmulatedTlsOnLoaderNotice(unsigned long reason, const void* process_ends);

}  // namespace quorvane::component
