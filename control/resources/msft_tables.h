// The shared tables of a type library file (MSFT format): names, ids, texts and composed types.
//
// Everything else in the file refers to their entries by byte offset. The tables of names and ids
// are hashed, and Windows finds names and ids through the hashes only, so they have to be exact.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "control/interface/guid.h"
#include "control/resources/bytes.h"

namespace quorvane::typelib {

/// Stands for "no entry" wherever the format has an offset.
inline constexpr std::uint32_t kNone = 0xFFFFFFFF;

/// The low half of the platform's hash of a name, as LHashValOfNameSys computes it for English and
/// 32-bit Windows. Case does not count, Y counts as U and W as V.
std::uint16_t NameHash(std::string_view name);

/// The bucket of an id: 0 to 31.
std::uint32_t IdBucket(const identities::Guid& id);

/// Each distinct name once, in the spelling and with the owner of its first use.
class NameTable {
 public:
  NameTable() { buckets_.fill(kNone); }

  /// All three give the offset of the name. `type_entry` is the offset of the owning type entry.
  std::uint32_t AddLibrary(std::string_view name) { return Add(name, kNone, 0); }
  std::uint32_t AddType(std::string_view name, std::uint32_t type_entry);
  std::uint32_t AddMember(std::string_view name, std::uint32_t type_entry);
  std::uint32_t AddArgument(std::string_view name) { return Add(name, kNone, 0); }

  std::uint32_t Count() const { return static_cast<std::uint32_t>(offsets_.size()); }
  std::uint32_t Characters() const { return characters_; }
  const Bytes& Entries() const { return entries_; }
  Bytes HashTable() const;

 private:
  std::uint32_t Add(std::string_view name, std::uint32_t owner, std::uint8_t flags);

  std::array<std::uint32_t, 128> buckets_{};
  std::map<std::string, std::uint32_t, std::less<>> offsets_;
  std::uint32_t characters_ = 0;
  Bytes entries_;
};

class IdTable {
 public:
  IdTable() { buckets_.fill(kNone); }

  /// Gives the offset of the id. `reference` tells what it identifies: the offset of a type entry,
  /// or one of the marks below.
  std::uint32_t Add(const identities::Guid& id, std::uint32_t reference);

  const Bytes& Entries() const { return entries_; }
  Bytes HashTable() const;

 private:
  std::array<std::uint32_t, 32> buckets_{};
  Bytes entries_;
};

inline constexpr std::uint32_t kThisLibrary = 0xFFFFFFFE;
inline constexpr std::uint32_t kImportedType = 1;     ///< added to the offset in the table of such
inline constexpr std::uint32_t kImportedLibrary = 2;  ///< likewise

/// Texts, 8 bits a character. Gives the offset.
class TextTable {
 public:
  std::uint32_t Add(std::string_view text);
  const Bytes& Entries() const { return entries_; }

 private:
  Bytes entries_;
};

/// The composed types. Simple types need no entry: Simple() is their whole description.
class TypeTable {
 public:
  static constexpr std::uint32_t Simple(std::uint16_t variant_type) {
    return 0x80000000U | (std::uint32_t{variant_type} << 16) | variant_type;
  }

  /// Both give the offset of the description.
  std::uint32_t PointerTo(std::uint16_t variant_type);
  std::uint32_t Named(std::uint32_t type_entry);

  const Bytes& Entries() const { return entries_; }

 private:
  std::uint32_t Add(std::uint32_t head, std::uint32_t tail);

  std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> offsets_;
  Bytes entries_;
};

}  // namespace quorvane::typelib
