#pragma once

#include <string_view>

#include "platform/windows/os_headers.h"

namespace quorvane::testing {

/// While it lives, the module calls the replacement where it imports that name from a library of
/// the system. Other modules go on with the library's own.
class ReplacedImport {
 public:
  template <class Function>
  ReplacedImport(HMODULE module, std::string_view name, Function* replacement)
      : slot_(SlotOf(module, name)) {
    if (slot_ == nullptr) return;
    real_ = *slot_;
    Write(reinterpret_cast<void*>(replacement));
  }
  ReplacedImport(const ReplacedImport&) = delete;
  ReplacedImport& operator=(const ReplacedImport&) = delete;
  ~ReplacedImport() {
    if (slot_ != nullptr) Write(real_);
  }

  /// Whether the module has an import of that name at all.
  [[nodiscard]] bool Took() const { return slot_ != nullptr; }
  /// What stood there before, for the replacement to call on; null when there is no such import.
  [[nodiscard]] void* Real() const { return real_; }
  /// For a module that leaves memory first: nothing is put back.
  void Forget() { slot_ = nullptr; }

 private:
  // Where the module keeps the address of what it imports under that name; null when it does not.
  static void** SlotOf(HMODULE module, std::string_view wanted) {
    auto* const image = reinterpret_cast<BYTE*>(module);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS32*>(
        image + reinterpret_cast<const IMAGE_DOS_HEADER*>(image)->e_lfanew);
    const DWORD table =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + table);
         library->Name != 0; ++library) {
      const auto* name =
          reinterpret_cast<const IMAGE_THUNK_DATA32*>(image + library->OriginalFirstThunk);
      auto* slot = reinterpret_cast<void**>(image + library->FirstThunk);
      for (; name->u1.AddressOfData != 0; ++name, ++slot) {
        if (IMAGE_SNAP_BY_ORDINAL32(name->u1.Ordinal)) continue;
        const auto* const entry =
            reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(image + name->u1.AddressOfData);
        if (wanted == reinterpret_cast<const char*>(entry->Name)) return slot;
      }
    }
    return nullptr;
  }

  void Write(void* address) {
    DWORD rights = 0;
    ::VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &rights);
    *slot_ = address;
    ::VirtualProtect(slot_, sizeof *slot_, rights, &rights);
  }

  void** slot_;
  void* real_ = nullptr;
};

}  // namespace quorvane::testing
