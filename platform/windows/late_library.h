#pragma once

#include <atomic>

#include "platform/windows/os_headers.h"

namespace quorvane {

/// A library of the system that is looked for at the first use of one of its calls, for what a
/// system may lack or what a host's load shall not pay for. It stays loaded until the module leaves
/// memory. Only the system's own directory is searched.
class LateLibrary {
 public:
  /// `file_name` must outlive the object.
  explicit LateLibrary(const wchar_t* file_name) : file_name_(file_name) {}
  ~LateLibrary();
  LateLibrary(const LateLibrary&) = delete;
  LateLibrary& operator=(const LateLibrary&) = delete;

  /// The address of an exported call. Raises library not found (48) or entry point not found (453);
  /// the next use then tries again.
  [[nodiscard]] FARPROC EntryPoint(const char* name);

 private:
  [[nodiscard]] HMODULE Module();

  const wchar_t* file_name_;
  std::atomic<HMODULE> module_ = nullptr;
};

/// One call of a late-bound library, with the type of a function pointer.
///   LateCall<decltype(&::GetAdaptersInfo)> call{library, "GetAdaptersInfo"};
///   call()(block, size);
template <class Function>
class LateCall {
 public:
  LateCall(LateLibrary& library, const char* name) : library_(library), name_(name) {}

  /// The function; raises as LateLibrary::EntryPoint() does.
  [[nodiscard]] Function operator()() {
    Function function = function_.load();
    if (function == nullptr) {
      function = reinterpret_cast<Function>(reinterpret_cast<void*>(library_.EntryPoint(name_)));
      function_.store(function);
    }
    return function;
  }

 private:
  LateLibrary& library_;
  const char* name_;
  std::atomic<Function> function_ = nullptr;
};

}  // namespace quorvane
