#pragma once

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/platform/posix/processes.h"

namespace quorvane::testing {

/// A user without privileges, in whose place the superuser runs what asks for rights.
inline uid_t OrdinaryUser() { return ::geteuid() == 0 ? 65534 : ::geteuid(); }

/// Runs the body in a process of that user; whether it gave true.
template <class Body>
bool AsOrdinaryUser(Body body) {
  return AllProcesses(1, [&](int /*number*/) {
    if (::geteuid() == 0 &&
        (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(OrdinaryUser()) != 0)) {
      return false;
    }
    return body();
  });
}

/// Gives the file or folder to that user, with these permissions.
inline bool GiveToOrdinaryUser(const std::filesystem::path& place, mode_t mode) {
  return ::chmod(place.c_str(), mode) == 0 &&
         (::geteuid() != 0 || ::chown(place.c_str(), OrdinaryUser(), OrdinaryUser()) == 0);
}

}  // namespace quorvane::testing
