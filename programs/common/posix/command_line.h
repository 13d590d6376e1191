#pragma once

#include <span>

namespace quorvane::programs {

/// Tells where the system holds and shows the words of the command line, the program's name first,
/// so that HideFromProcessList() can write into them.
void KeepCommandLine(std::span<char*> words);

}  // namespace quorvane::programs
