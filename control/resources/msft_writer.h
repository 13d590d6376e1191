// Writes a type library in the MSFT format: the file that LoadTypeLib reads.
//
// The house writes its library itself because the interface compiler that comes with mingw-w64
// cannot express all of it and stamps the time of day into it. What is written depends on nothing
// but the calls made here, so two builds give the same bytes.
//
// Covered is what a control needs: dual interfaces whose members take or return one value, empty
// dispatch interfaces, classes, aliases, and interfaces that add nothing to one of another library.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "control/interface/guid.h"
#include "control/resources/bytes.h"
#include "control/resources/msft_tables.h"

namespace quorvane::typelib {

struct Version {
  std::uint16_t major;
  std::uint16_t minor;
};

struct LibraryTraits {
  std::string name;
  identities::Guid id;
  Version version;
  std::uint32_t locale;
  std::uint16_t flags;  ///< LIBFLAG_...
  std::string help_text;
  std::string help_file;  ///< or empty: it has none
};

/// An interface of another library.
struct ImportTraits {
  identities::Guid library_id;
  Version version;
  std::string file;
  identities::Guid id;
};

struct TypeTraits {
  std::string name;
  identities::Guid id;
  Version version;
  std::uint16_t flags;  ///< TYPEFLAG_...
};

/// How a member is called; the values are those of INVOKEKIND.
enum class Invoke : std::uint32_t { kFunction = 1, kPropertyGet = 2, kPropertyPut = 4 };

/// A member that returns HRESULT. A put takes its value; the others hand theirs out through their
/// only argument, the return value of the call. That is nameless, but for a get in front of its
/// put: it bears the name of the put's argument.
struct Function {
  std::string name;
  Invoke invoke;
  std::uint32_t dispatch_id;
  std::uint16_t variant_type;
  std::string argument;  ///< of a put
  std::uint32_t help_context;
};

/// Names a type inside the library or an imported one; comes from an Add... or Import... call.
using TypeReference = std::uint32_t;

struct Implemented {
  TypeReference type;
  std::uint32_t flags;  ///< IMPLTYPEFLAG_...
};

class MsftWriter {
 public:
  explicit MsftWriter(const LibraryTraits& library);

  /// The one import, to be called before any other: IDispatch, the base of the dual interfaces
  /// added later, ...
  void ImportDispatch(const ImportTraits& dispatch);
  /// ... or a dual interface of another library.
  TypeReference ImportDualInterface(const ImportTraits& traits);

  TypeReference AddDualInterface(const TypeTraits& traits, const std::vector<Function>& functions);
  TypeReference AddDispatchInterface(const TypeTraits& traits);
  TypeReference AddClass(const TypeTraits& traits, const std::vector<Implemented>& interfaces);
  /// An interface without members of its own, with `members` inherited from a dual one.
  TypeReference AddEmptyHeir(const TypeTraits& traits, TypeReference base, std::size_t members);
  TypeReference AddAlias(const TypeTraits& traits, TypeReference of);

  /// The whole file.
  Bytes Write() const;

 private:
  // The fields of a type entry that differ from kind to kind.
  struct Entry {
    std::uint32_t kind;
    std::uint32_t alignment;
    std::uint32_t id;
    std::uint32_t name;
    std::uint16_t flags;
    Version version;
    std::uint16_t function_count = 0;
    std::uint32_t hints[2] = {0, kNone};
    std::uint16_t base_count = 0;
    std::uint16_t table_size = 0;  // of the virtual function table, in bytes
    std::uint32_t instance_size = 4;
    std::uint32_t type = kNone;  // base, aliased type or first implemented interface
    std::uint32_t inherited = 0;
    Bytes functions;
  };

  TypeReference Import(const ImportTraits& traits, std::uint32_t kind);
  Entry NewEntry(const TypeTraits& traits, std::uint32_t kind, std::uint32_t alignment);
  TypeReference Add(Entry entry);
  TypeReference NextReference() const;
  Bytes WriteFunctions(const std::vector<Function>& functions);
  std::uint32_t NameOfResult(const std::vector<Function>& functions, std::uint32_t index);
  Bytes WriteFunction(const std::vector<Function>& functions, std::uint32_t index);
  void WriteHeader(Bytes& file) const;
  Bytes WriteEntries(std::uint32_t functions_start) const;

  LibraryTraits library_;
  NameTable names_;
  IdTable ids_;
  TextTable texts_;
  TypeTable types_;
  TypeReference dispatch_ = kNone;
  std::uint32_t library_id_;
  std::uint32_t library_name_;
  std::uint32_t help_file_;
  std::uint32_t help_text_;
  Bytes imported_libraries_;
  Bytes imported_types_;
  Bytes class_interfaces_;
  std::vector<Entry> entries_;
};

}  // namespace quorvane::typelib
