#pragma once

#include <string>
#include <vector>

#include "control/automation/com.h"

namespace quorvane::programs {

/// A parameter of a method: its name, and whether the method fills it.
struct Parameter {
  std::string name;
  bool is_out = false;
};

/// A method of a watched interface.
struct Method {
  const char* name;
  std::vector<Parameter> parameters;
  std::size_t slot;  ///< in the virtual table
  void* watcher;     ///< what stands in that slot of a face: see boundary.h
};

/// An interface whose calls the log can tell.
struct Interface {
  Interface(const GUID& its_id, const char* its_name, const std::vector<Method>& its_methods);

  [[nodiscard]] const Method& At(std::size_t slot) const { return methods[slot - kOwn]; }

  static constexpr std::size_t kOwn = 3;  ///< the slots of IUnknown

  const GUID& id;
  const char* name;
  std::vector<Method> methods;  ///< in the order of the slots, without IUnknown's
  std::vector<void*> table;     ///< the virtual table of a face
};

/// The description of that interface, or null when it is not watched.
[[nodiscard]] const Interface* FindInterface(REFIID id);

}  // namespace quorvane::programs
