#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <memory>
#include <string>
#include <utility>

#include "platform/file_numbers.h"
#include "platform/posix/file_errors.h"
#include "runtime/utf8.h"

// The stand-in on Linux: names go out in UTF-8 with each backslash taken as a slash, and end at
// their first zero. Upper and lower case differ, as everywhere on this system. Hidden is what
// starts with a dot; a listing counts regular files only.

namespace quorvane {
namespace {

class OpenFile {
 public:
  OpenFile() = default;
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  OpenFile(OpenFile&& other) noexcept { std::swap(descriptor_, other.descriptor_); }
  OpenFile& operator=(OpenFile&& other) noexcept {
    OpenFile taken(std::move(other));
    std::swap(descriptor_, taken.descriptor_);
    return *this;
  }
  ~OpenFile() {
    if (*this) ::close(descriptor_);
  }

  explicit operator bool() const { return descriptor_ >= 0; }
  [[nodiscard]] int Descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

FileNumbers<OpenFile>& openFiles() { return threadRecord<FileNumbers<OpenFile>>(); }

std::string SystemName(const Text& name) {
  std::string system_name = ToUtf8(name);
  if (const auto zero = system_name.find('\0'); zero != std::string::npos) system_name.resize(zero);
  for (char& c : system_name)
    if (c == '\\') c = '/';
  return system_name;
}

struct PathParts {
  std::string directory;
  std::string name;
};

PathParts Split(const std::string& path) {
  const std::size_t name_start = path.rfind('/') + 1;
  return {path.substr(0, name_start), path.substr(name_start)};
}

bool Matches(std::u16string_view name, std::u16string_view pattern) {
  if (pattern.empty()) return name.empty();
  if (pattern.front() == u'*') {
    return Matches(name, pattern.substr(1)) || (!name.empty() && Matches(name.substr(1), pattern));
  }
  return !name.empty() && (pattern.front() == u'?' || pattern.front() == name.front()) &&
         Matches(name.substr(1), pattern.substr(1));
}

// Nothing there is no failure; anything else that keeps a file from being seen is one.
bool IsNormalFile(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) {
    return S_ISREG(status.st_mode) && Split(path).name.front() != '.';
  }
  if (errno == ENOENT || errno == ENOTDIR) return false;
  RaiseFileError(errno);
}

// The lowest in order of characters, since this system keeps a directory in no order of its own.
Text FirstMatch(const PathParts& wanted) {
  const std::string directory = wanted.directory.empty() ? "." : wanted.directory;
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(directory.c_str()), &::closedir);
  if (!entries) {
    if (errno == ENOENT || errno == ENOTDIR) return u"";
    RaiseFileError(errno);
  }
  const Text pattern = FromUtf8(wanted.name == "*.*" ? "*" : wanted.name);
  Text first = u"";
  while (const dirent* entry = ::readdir(entries.get())) {
    const Text name = FromUtf8(entry->d_name);
    if (Matches(name.Characters(), pattern.Characters()) &&
        (first.IsEmpty() || name.Characters() < first.Characters()) &&
        IsNormalFile(wanted.directory + entry->d_name)) {
      first = name;
    }
  }
  return first;
}

class PosixFiles final : public Files {
 public:
  Text ListName(const Text& name) override {
    const std::string path = SystemName(name);
    const PathParts parts = Split(path);
    if (parts.name.find_first_of("*?") != std::string::npos) return FirstMatch(parts);
    return !parts.name.empty() && IsNormalFile(path) ? FromUtf8(parts.name) : Text(u"");
  }

  std::int16_t FreeFileNumber() override { return openFiles().Free(); }

  void OpenForReading(const Text& name, std::int16_t number) override {
    openFiles().RequireFree(number);
    OpenFile file(::open(SystemName(name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) RaiseFileError(errno);
    openFiles().Keep(number, std::move(file));
  }

  std::int32_t Length(std::int16_t number) override {
    struct stat status {};
    if (::fstat(openFiles().At(number).Descriptor(), &status) != 0) RaiseFileError(errno);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(status.st_size));
  }

  void Read(std::int16_t number, ByteArray& buffer) override {
    const int descriptor = openFiles().At(number).Descriptor();
    std::span<std::uint8_t> rest = buffer.Elements();
    while (!rest.empty()) {
      const ssize_t count = ::read(descriptor, rest.data(), rest.size());
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) RaiseFileError(errno);
      if (count == 0) return;
      rest = rest.subspan(static_cast<std::size_t>(count));
    }
  }

  void Close(std::int16_t number) override { openFiles().Close(number); }
};

}  // namespace

Files& files() {
  static PosixFiles instance;
  return instance;
}

}  // namespace quorvane
