// Takes the place of the system's calls in the program that is linked with it (see its link
// options).

#include "tests/platform/posix/system_faults.h"

#include <fcntl.h>
#include <iconv.h>
#include <ifaddrs.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cstring>
#include <ctime>

using quorvane::testing::other_system;
using quorvane::testing::SystemFaults;

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
#define FAULTY(result, name, parameters, arguments)                        \
  extern "C" result __real_##name parameters;                              \
  extern "C" result __wrap_##name parameters;                              \
  result __wrap_##name parameters {                                        \
    return SystemFaults::Strikes() ? result{-1} : __real_##name arguments; \
  }

FAULTY(int, open, (const char* path, int flags, unsigned mode), (path, flags, mode))
FAULTY(ssize_t, read, (int file, void* buffer, std::size_t size), (file, buffer, size))
FAULTY(ssize_t, write, (int file, const void* buffer, std::size_t size), (file, buffer, size))
FAULTY(int, stat, (const char* path, struct stat* status), (path, status))
FAULTY(int, lstat, (const char* path, struct stat* status), (path, status))
FAULTY(int, fstat, (int file, struct stat* status), (file, status))
FAULTY(int, faccessat, (int at, const char* path, int right, int flags), (at, path, right, flags))
FAULTY(int, flock, (int file, int operation), (file, operation))
FAULTY(int, fchown, (int file, unsigned user, unsigned group), (file, user, group))
FAULTY(int, fchmod, (int file, unsigned mode), (file, mode))
FAULTY(int, fsync, (int file), (file))
FAULTY(int, rename, (const char* from, const char* to), (from, to))
FAULTY(int, mkdir, (const char* path, unsigned mode), (path, mode))

extern "C" {
int __real_fcntl(int file, int command, long argument);
int __wrap_fcntl(int file, int command, long argument);
int __real_fstatfs(int file, struct statfs* status);
int __wrap_fstatfs(int file, struct statfs* status);
int __real_gethostname(char* name, std::size_t size);
int __wrap_gethostname(char* name, std::size_t size);
int __real_getifaddrs(ifaddrs** first);
int __wrap_getifaddrs(ifaddrs** first);
int __real_getpwnam_r(const char* name, passwd* entry, char* room, std::size_t size,
                      passwd** found);
int __wrap_getpwnam_r(const char* name, passwd* entry, char* room, std::size_t size,
                      passwd** found);
int __real_getpwuid_r(uid_t id, passwd* entry, char* room, std::size_t size, passwd** found);
int __wrap_getpwuid_r(uid_t id, passwd* entry, char* room, std::size_t size, passwd** found);
iconv_t __real_iconv_open(const char* to, const char* from);
iconv_t __wrap_iconv_open(const char* to, const char* from);
int __real_nanosleep(const timespec* pause, timespec* left);
int __wrap_nanosleep(const timespec* pause, timespec* left);
}

int __wrap_fcntl(int file, int command, long argument) {
  if (command != F_SETLEASE || !other_system.refuses_leases) {
    return __real_fcntl(file, command, argument);
  }
  errno = EAGAIN;
  return -1;
}

int __wrap_fstatfs(int file, struct statfs* status) {
  const int result = __real_fstatfs(file, status);
  if (other_system.file_system != 0) status->f_type = other_system.file_system;
  return result;
}

// Like the C library's: what does not fit with its zero is cut off, and an error.
int __wrap_gethostname(char* name, std::size_t size) {
  if (other_system.host_name == nullptr) return __real_gethostname(name, size);
  std::strncpy(name, other_system.host_name, size);
  errno = ENAMETOOLONG;
  return std::strlen(other_system.host_name) < size ? 0 : -1;
}

int __wrap_getifaddrs(ifaddrs** first) {
  *first = nullptr;
  if (other_system.lacks_adapters) return 0;
  if (other_system.hides_adapters) {
    errno = EMFILE;
    return -1;
  }
  const int result = __real_getifaddrs(first);
  for (ifaddrs* entry = *first; entry != nullptr && other_system.link_type >= 0;
       entry = entry->ifa_next) {
    entry->ifa_flags &= ~static_cast<unsigned>(IFF_LOOPBACK);
    if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_PACKET) continue;
    reinterpret_cast<sockaddr_ll*>(entry->ifa_addr)->sll_hatype =
        static_cast<std::uint16_t>(other_system.link_type);
  }
  return result;
}

int __wrap_getpwuid_r(uid_t id, passwd* entry, char* room, std::size_t size, passwd** found) {
  if (!other_system.lacks_user) return __real_getpwuid_r(id, entry, room, size, found);
  *found = nullptr;
  return 0;
}

int __wrap_getpwnam_r(const char* name, passwd* entry, char* room, std::size_t size,
                      passwd** found) {
  if (other_system.joined_user == nullptr || std::strcmp(name, other_system.joined_user) != 0) {
    return __real_getpwnam_r(name, entry, room, size, found);
  }
  *entry = {};
  *room = '\0';
  entry->pw_name = entry->pw_dir = room;
  entry->pw_uid = 4711;
  *found = entry;
  return 0;
}

iconv_t __wrap_iconv_open(const char* to, const char* from) {
  if (!other_system.lacks_converters) return __real_iconv_open(to, from);
  errno = EINVAL;
  return reinterpret_cast<iconv_t>(-1);
}

int __wrap_nanosleep(const timespec* pause, timespec* left) {
  return other_system.skips_pauses ? 0 : __real_nanosleep(pause, left);
}
// NOLINTEND(bugprone-reserved-identifier)
