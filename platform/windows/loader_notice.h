#pragma once

namespace quorvane {

/// Passes one notice of the loader (DLL_PROCESS_ATTACH, DLL_THREAD_DETACH, ...) on to the
/// per-thread records.
///
/// The notices come in two ways, and one that comes twice does nothing the second time: to programs
/// through their TLS directory, to the module through its entry function, because Windows XP runs
/// no TLS callbacks of a library that was loaded after the process started. `process_ends` is the
/// entry function's third argument: not null when the whole process ends.
void OnLoaderNotice(unsigned long reason, const void* process_ends);

}  // namespace quorvane
