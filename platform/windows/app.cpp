#include "platform/app.h"

#include "platform/windows/os_headers.h"

// Defined by the linker at the start of whichever module this code is linked into.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier): the linker's name

namespace quorvane {
namespace {

std::u16string ModuleFile() {
  std::u16string name(MAX_PATH, u'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(reinterpret_cast<HMODULE>(&__ImageBase),
                                              reinterpret_cast<wchar_t*>(name.data()),
                                              static_cast<DWORD>(name.size()));
    if (length < name.size()) {
      name.resize(length);
      return name;
    }
    name.resize(name.size() * 2);
  }
}

// C:\OCX\a.ocx lies in C:\OCX, but C:\a.ocx lies in C:\ with its separator.
std::u16string DirectoryOf(const std::u16string& file) {
  const std::size_t separator = file.rfind(u'\\');
  if (separator == std::u16string::npos) return {};
  const bool is_root = separator > 0 && file[separator - 1] == u':';
  return file.substr(0, is_root ? separator + 1 : separator);
}

std::u16string StemOf(const std::u16string& file) {
  const std::size_t start = file.rfind(u'\\') + 1;
  const std::size_t dot = file.rfind(u'.');
  const bool has_extension = dot != std::u16string::npos && dot > start;
  return file.substr(start, has_extension ? dot - start : std::u16string::npos);
}

class WindowsApp final : public App {
 public:
  Text Path() override { return Text(DirectoryOf(ModuleFile())); }
  Text EXEName() override { return Text(StemOf(ModuleFile())); }
};

}  // namespace

App& app() {
  static WindowsApp instance;
  return instance;
}

}  // namespace quorvane
