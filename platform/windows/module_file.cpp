#include "platform/windows/module_file.h"

// Defined by the linker at the start of whichever module this code is linked into.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier): the linker's name

namespace quorvane {

HINSTANCE ModuleInstance() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

Text ModuleFileName() {
  std::u16string name(MAX_PATH, u'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(
        ModuleInstance(), reinterpret_cast<wchar_t*>(name.data()), static_cast<DWORD>(name.size()));
    if (length < name.size()) {
      name.resize(length);
      return name;
    }
    name.resize(name.size() * 2);
  }
}

}  // namespace quorvane
