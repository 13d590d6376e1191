#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <memory>
#include <string>
#include <utility>

#include "platform/file_numbers.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/system_text.h"

// The stand-in on Linux; its rules are in docs/host-services/stand-ins.md.

namespace quorvane {
namespace {

[[noreturn]] void RaiseFileError(int system_code) { Raise(FileErrorNumber(system_code)); }

FileNumbers<Descriptor>& openFiles() { return threadRecord<FileNumbers<Descriptor>>(); }

struct PathParts {
  std::string directory;
  std::string name;
};

PathParts Split(const std::string& path) {
  const std::size_t name_start = path.rfind('/') + 1;
  return {path.substr(0, name_start), path.substr(name_start)};
}

bool IsWildCard(char16_t character) { return character == u'*' || character == u'?'; }

constexpr std::size_t kNoFit = static_cast<std::size_t>(-1);

// How many characters at the head of the name the head of the pattern takes, which is no `*`: 0 or
// 1, or kNoFit.
std::size_t Taken(std::u16string_view name, std::u16string_view pattern) {
  if (pattern.empty()) return kNoFit;
  if (pattern[0] == u'?') return name.empty() || name[0] == u'.' ? 0 : 1;
  if (!name.empty()) return name[0] == pattern[0] ? 1 : kNoFit;
  return pattern[0] == u'.' && (pattern.size() == 1 || IsWildCard(pattern[1])) ? 0 : kNoFit;
}

// The wild cards of Windows: `*` stands for any characters, before the pattern's closing dot for
// any but a dot; `?` for one, but for none at a dot and at the end; a dot before a wild card or at
// the pattern's end stands for the name's end, too. Walks back to the last `*` only, since an
// earlier one can take up nothing that the last cannot.
bool Matches(std::u16string_view name, std::u16string_view pattern) {
  std::u16string_view behind_star;
  std::u16string_view not_by_star;
  bool star = false;
  while (!name.empty() || !pattern.empty()) {
    const bool takes_no_dot = pattern == u"*.";
    if (takes_no_dot && name.find(u'.') == std::u16string_view::npos) return true;
    const std::size_t taken = takes_no_dot ? kNoFit : Taken(name, pattern);
    if (!takes_no_dot && pattern.starts_with(u'*')) {
      pattern.remove_prefix(1);
      star = true;
      behind_star = pattern;
      not_by_star = name;
    } else if (taken != kNoFit) {
      pattern.remove_prefix(1);
      name.remove_prefix(taken);
    } else if (star && !not_by_star.empty()) {
      not_by_star.remove_prefix(1);
      name = not_by_star;
      pattern = behind_star;
    } else {
      return false;
    }
  }
  return true;
}

// 0 for a normal file; ENOENT for what is none, a hidden one among them.
int LookUp(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return errno;
  return S_ISREG(status.st_mode) && Split(path).name.front() != '.' ? 0 : ENOENT;
}

// That there is nothing by that name is an answer; any other failure is one.
void RaiseUnlessAbsent(int error) {
  if (error != 0 && error != ENOENT && error != ENOTDIR) RaiseFileError(error);
}

// The lowest in order of characters, since this system keeps a directory in no order of its own.
Text FirstMatch(const PathParts& wanted) {
  const std::string directory = wanted.directory.empty() ? "." : wanted.directory;
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(directory.c_str()), &::closedir);
  if (!entries) RaiseUnlessAbsent(errno);
  const Text pattern = FileNameFrom(wanted.name);
  Text first = u"";
  while (const dirent* entry = entries ? ::readdir(entries.get()) : nullptr) {
    const Text name = FileNameFrom(entry->d_name);
    if (Matches(name.Characters(), pattern.Characters()) &&
        (first.IsEmpty() || name.Characters() < first.Characters()) &&
        LookUp(wanted.directory + entry->d_name) == 0) {
      first = name;
    }
  }
  return first;
}

Descriptor Open(const std::string& path) {
  Descriptor file = OpenRegularFile(path.c_str());
  if (file) return file;
  const int error = errno;
  const std::string directory = Split(path).directory;
  struct stat status {};
  const bool path_is_missing = path.empty() || (error == ENOENT && !directory.empty() &&
                                                ::stat(directory.c_str(), &status) != 0);
  RaiseFileError(path_is_missing ? ENOTDIR : error);
}

// Elsewhere, over a network above all, a lease may be refused while nobody has the file open.
bool TellsOfWriters(int descriptor) {
  constexpr auto kTold =
      std::to_array<std::uint32_t>({BTRFS_SUPER_MAGIC, EXT4_SUPER_MAGIC, F2FS_SUPER_MAGIC,
                                    TMPFS_MAGIC, OVERLAYFS_SUPER_MAGIC, XFS_SUPER_MAGIC});
  struct statfs system {};
  return ::fstatfs(descriptor, &system) == 0 &&
         std::ranges::count(kTold, static_cast<std::uint32_t>(system.f_type)) > 0;
}

void ShutWritersOut(const Descriptor& file) {
  // The lease is granted only while nobody has the file open for writing. It is given back at once:
  // kept, it would make the next writer wait, and a signal that ends the process tells of one; so
  // for the moment that it lasts a harmless signal stands in.
  const int descriptor = file.Number();
  ::fcntl(descriptor, F_SETSIG, SIGURG);
  if (::fcntl(descriptor, F_SETLEASE, F_RDLCK) == 0) {
    ::fcntl(descriptor, F_SETLEASE, F_UNLCK);
  } else if (errno == EAGAIN && TellsOfWriters(descriptor)) {
    RaiseFileError(EAGAIN);
  }
  if (::flock(descriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK) RaiseFileError(EAGAIN);
}

class PosixFiles final : public Files {
 public:
  Text ListName(const Text& name) override {
    const std::string path = SystemFileName(name.Characters());
    const PathParts parts = Split(path);
    if (parts.name.find_first_of("*?") != std::string::npos) return FirstMatch(parts);
    if (parts.name.empty()) return u"";
    const int error = LookUp(path);
    RaiseUnlessAbsent(error);
    return error == 0 ? FileNameFrom(parts.name) : Text(u"");
  }

  std::int16_t FreeFileNumber() override { return openFiles().Free(); }

  void OpenForReading(const Text& name, std::int16_t number) override {
    openFiles().RequireFree(number);
    Descriptor file = Open(SystemFileName(name.Characters()));
    ShutWritersOut(file);
    openFiles().Keep(number, std::move(file));
  }

  std::int32_t Length(std::int16_t number) override {
    struct stat status {};
    if (::fstat(openFiles().At(number).Number(), &status) != 0) RaiseFileError(errno);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(status.st_size));
  }

  void Read(std::int16_t number, ByteArray& buffer) override {
    const int descriptor = openFiles().At(number).Number();
    std::span<std::uint8_t> rest = buffer.Elements();
    while (!rest.empty()) {
      const ssize_t count = TEMP_FAILURE_RETRY(::read(descriptor, rest.data(), rest.size()));
      if (count < 0) RaiseFileError(errno);
      if (count == 0) return;
      rest = rest.subspan(static_cast<std::size_t>(count));
    }
  }

  void Close(std::int16_t number) override { openFiles().Close(number); }
};

}  // namespace

std::int32_t FileErrorNumber(int system_code) {
  constexpr auto kNumbers = std::to_array<std::pair<int, std::int32_t>>({
      {ENOENT, ErrorNumber::kFileNotFound},      {ENOTDIR, ErrorNumber::kPathNotFound},
      {EMFILE, ErrorNumber::kTooManyFiles},      {ENFILE, ErrorNumber::kTooManyFiles},
      {EAGAIN, ErrorNumber::kPermissionDenied},  {EBUSY, ErrorNumber::kPermissionDenied},
      {ETXTBSY, ErrorNumber::kPermissionDenied}, {EROFS, ErrorNumber::kPermissionDenied},
      {ENOMEM, ErrorNumber::kOutOfMemory},       {EBADF, ErrorNumber::kBadFileNumber},
      {EINVAL, ErrorNumber::kBadFileNumber},     {ENAMETOOLONG, ErrorNumber::kBadFileNumber},
      {EIO, ErrorNumber::kDeviceInputOutput},    {EEXIST, ErrorNumber::kFileAlreadyExists},
      {ENOSPC, ErrorNumber::kDiskFull},          {EDQUOT, ErrorNumber::kDiskFull},
      {ENODEV, ErrorNumber::kDeviceUnavailable}, {ENXIO, ErrorNumber::kDeviceUnavailable},
      {ENOMEDIUM, ErrorNumber::kDiskNotReady},
  });
  for (const auto& [code, number] : kNumbers) {
    if (code == system_code) return number;
  }
  return ErrorNumber::kPathFileAccess;  // EACCES, EPERM, EISDIR and ELOOP among them
}

Files& files() noexcept {
  static PosixFiles instance;
  return instance;
}

}  // namespace quorvane
