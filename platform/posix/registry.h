#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/posix/handle_table.h"
#include "platform/posix/registry_store.h"

namespace quorvane {

/// The registry calls over a store: handles, access rights and error codes. Any thread may use it.
class Registry {
 public:
  using Handle = std::int32_t;

  explicit Registry(RegistryStore store) : store_(std::move(store)) {}

  // Each gives an error code of system_errors.h; names are in the system's code page.
  std::int32_t Open(Handle from, const char* path, std::int32_t access, Handle* opened);
  std::int32_t Create(Handle from, const char* path, std::int32_t access, Handle* opened,
                      std::int32_t* disposition);
  std::int32_t Query(Handle key, const char* name, std::int32_t* type, void* data,
                     std::int32_t* size);
  std::int32_t Set(Handle key, const char* name, std::int32_t type, const void* data,
                   std::int32_t size);
  std::int32_t Close(Handle key);

  /// How many handles are open.
  [[nodiscard]] std::size_t OpenHandles() { return open_keys_.Count(); }

 private:
  struct OpenKey {
    std::u16string path;
    std::int32_t access = 0;
  };

  [[nodiscard]] std::optional<OpenKey> Resolve(Handle handle);
  std::int32_t OpenOrCreate(Handle from, const char* path, std::int32_t access, Handle* opened,
                            std::int32_t* disposition);

  RegistryStore store_;
  HandleTable<Handle, OpenKey> open_keys_;
};

}  // namespace quorvane
