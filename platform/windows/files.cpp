#include "platform/files.h"

#include <utility>

#include "platform/file_numbers.h"
#include "platform/windows/file_errors.h"
#include "platform/windows/os_headers.h"

namespace quorvane {
namespace {

// The names are 16-bit texts of the same form as the system's own.
const wchar_t* SystemName(const Text& name) {
  return reinterpret_cast<const wchar_t*>(name.Characters().c_str());
}

class OpenFile {
 public:
  OpenFile() = default;
  explicit OpenFile(HANDLE handle) : handle_(handle) {}
  OpenFile(OpenFile&& other) noexcept { std::swap(handle_, other.handle_); }
  OpenFile& operator=(OpenFile&& other) noexcept {
    OpenFile taken(std::move(other));
    std::swap(handle_, taken.handle_);
    return *this;
  }
  ~OpenFile() {
    if (*this) ::CloseHandle(handle_);
  }

  explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] HANDLE Handle() const { return handle_; }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

FileNumbers<OpenFile>& openFiles() { return threadRecord<FileNumbers<OpenFile>>(); }

bool IsNormalFile(DWORD attributes) {
  constexpr DWORD kNotListed =
      FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_DIRECTORY;
  return (attributes & kNotListed) == 0;
}

// A name that means one file at most, and the same file to GetFileAttributes as to a listing. Not
// so with wild cards (those of the old DOS forms too), with a stream behind a colon, and with
// nothing behind the last separator.
bool IsPlain(std::u16string_view name) {
  constexpr std::size_t kBehindDriveLetter = 2;
  return !name.empty() && name.find_first_of(u"*?<>\"|") == name.npos &&
         name.find(u':', kBehindDriveLetter) == name.npos && name.back() != u'\\' &&
         name.back() != u'/';
}

std::u16string_view LastComponent(std::u16string_view name) {
  return name.substr(name.find_last_of(u"\\/:") + 1);
}

class Listing {
 public:
  explicit Listing(const Text& name) : handle_(::FindFirstFileW(SystemName(name), &entry_)) {}
  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;
  ~Listing() {
    if (handle_ != INVALID_HANDLE_VALUE) ::FindClose(handle_);
  }

  // The first normal file; empty when there is none.
  Text FirstNormalFile() {
    bool found = handle_ != INVALID_HANDLE_VALUE;
    while (found && !IsNormalFile(entry_.dwFileAttributes))
      found = ::FindNextFileW(handle_, &entry_) != 0;
    if (found) return Text(reinterpret_cast<const char16_t*>(entry_.cFileName));
    switch (::GetLastError()) {
      case ERROR_FILE_NOT_FOUND:
      case ERROR_PATH_NOT_FOUND:
      case ERROR_DIRECTORY:  // a file stands where a directory should
      case ERROR_NO_MORE_FILES:
        return u"";
      default:
        RaiseLastFileError();
    }
  }

 private:
  WIN32_FIND_DATAW entry_{};
  HANDLE handle_;
};

class WindowsFiles final : public Files {
 public:
  // A listing costs many times what asking for the attributes of one name does (see
  // benchmarks/README.md), so that is asked first where both must agree. A failure to tell them
  // settles nothing (an open page file refuses them, and yet is listed), so then the listing
  // decides.
  Text ListName(const Text& name) override {
    const std::u16string_view system_name(name.Characters().c_str());  // up to its first zero
    if (IsPlain(system_name)) {
      const DWORD attributes = ::GetFileAttributesW(SystemName(name));
      if (attributes != INVALID_FILE_ATTRIBUTES)
        return IsNormalFile(attributes) ? LastComponent(system_name) : u"";
    }
    return Listing(name).FirstNormalFile();
  }

  std::int16_t FreeFileNumber() override { return openFiles().Free(); }

  void OpenForReading(const Text& name, std::int16_t number) override {
    openFiles().RequireFree(number);
    OpenFile file(::CreateFileW(SystemName(name), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) RaiseLastFileError();
    openFiles().Keep(number, std::move(file));
  }

  std::int32_t Length(std::int16_t number) override {
    LARGE_INTEGER length{};
    if (::GetFileSizeEx(openFiles().At(number).Handle(), &length) == 0) RaiseLastFileError();
    return static_cast<std::int32_t>(length.LowPart);
  }

  void Read(std::int16_t number, ByteArray& buffer) override {
    const HANDLE handle = openFiles().At(number).Handle();
    std::span<std::uint8_t> rest = buffer.Elements();
    while (!rest.empty()) {
      DWORD count = 0;
      if (::ReadFile(handle, rest.data(), rest.size(), &count, nullptr) == 0) RaiseLastFileError();
      if (count == 0) return;
      rest = rest.subspan(count);
    }
  }

  void Close(std::int16_t number) override { openFiles().Close(number); }
};

}  // namespace

Files& files() noexcept {
  static WindowsFiles instance;
  return instance;
}

}  // namespace quorvane
