#include "platform/windows/delay_load.h"

#include <string>

#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

// The full path, so that no file of the same name beside the host's program is taken instead.
std::wstring InSystemDirectory(const wchar_t* file_name) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(::GetSystemDirectoryW(path.data(), MAX_PATH));
  return path + L'\\' + file_name;
}

}  // namespace

DelayLoadLibrary::~DelayLoadLibrary() {
  if (const HMODULE module = module_.load()) ::FreeLibrary(module);
}

HMODULE DelayLoadLibrary::Module() {
  if (const HMODULE module = module_.load()) return module;
  const HMODULE loaded = ::LoadLibraryW(InSystemDirectory(file_name_).c_str());
  if (loaded == nullptr) Raise(ErrorNumber::kLibraryNotFound);
  HMODULE first = nullptr;
  if (module_.compare_exchange_strong(first, loaded)) return loaded;
  ::FreeLibrary(loaded);  // another thread was faster
  return first;
}

FARPROC DelayLoadLibrary::EntryPoint(const char* name) {
  const FARPROC entry_point = ::GetProcAddress(Module(), name);
  if (entry_point == nullptr) Raise(ErrorNumber::kEntryPointNotFound);
  return entry_point;
}

}  // namespace quorvane
