#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <vector>

namespace quorvane::testing {

/// Runs `body(number)` in `count` processes at a time; true when every one gave true.
template <class Body>
bool AllProcesses(int count, Body body) {
  std::vector<pid_t> children;
  for (int number = 0; number < count; ++number) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(body(number) ? 0 : 1);
    children.push_back(child);
  }
  bool all = true;
  for (const pid_t child : children) {
    int status = -1;
    all = child > 0 && ::waitpid(child, &status, 0) == child && status == 0 && all;
  }
  return all;
}

}  // namespace quorvane::testing
