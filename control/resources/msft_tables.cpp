#include "control/resources/msft_tables.h"

namespace quorvane::typelib {
namespace {

// What a character counts as in the hash of a name.
std::uint32_t Folded(char character) {
  if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
  if (character == 'Y') return 'U';
  if (character == 'W') return 'V';
  return static_cast<std::uint8_t>(character);
}

template <std::size_t kCount>
Bytes Written(const std::array<std::uint32_t, kCount>& buckets) {
  Bytes table;
  for (std::uint32_t head : buckets) table.Put32(head);
  return table;
}

}  // namespace

std::uint16_t NameHash(std::string_view name) {
  std::uint32_t hash = 0x0DEADBEE;
  for (char character : name) hash = hash * 37 + Folded(character);
  return static_cast<std::uint16_t>(hash % 65599);
}

std::uint32_t IdBucket(const identities::Guid& id) {
  Bytes bytes;
  bytes.PutId(id);
  std::uint32_t mixed = 0;
  for (std::size_t i = 0; i < 16; i += 2) {
    mixed ^= bytes.Data()[i] | (std::uint32_t{bytes.Data()[i + 1]} << 8);
  }
  return mixed & 0x1F;
}

std::uint32_t NameTable::AddType(std::string_view name, std::uint32_t type_entry) {
  constexpr std::uint8_t kNameOfType = 0x38;
  return Add(name, type_entry, kNameOfType);
}

std::uint32_t NameTable::AddMember(std::string_view name, std::uint32_t type_entry) {
  return Add(name, type_entry, 0);
}

std::uint32_t NameTable::Add(std::string_view name, std::uint32_t owner, std::uint8_t flags) {
  if (auto known = offsets_.find(name); known != offsets_.end()) return known->second;

  const std::uint32_t offset = entries_.Size();
  const std::uint16_t hash = NameHash(name);
  std::uint32_t& bucket = buckets_[hash & 0x7F];
  entries_.Put32({owner, bucket});
  entries_.Put8(static_cast<std::uint8_t>(name.size()));
  entries_.Put8(flags);
  entries_.Put16(hash);
  entries_.PutText(name);
  entries_.Align('W');

  bucket = offset;
  offsets_.emplace(name, offset);
  characters_ += static_cast<std::uint32_t>(name.size());
  return offset;
}

Bytes NameTable::HashTable() const { return Written(buckets_); }

std::uint32_t IdTable::Add(const identities::Guid& id, std::uint32_t reference) {
  const std::uint32_t offset = entries_.Size();
  std::uint32_t& bucket = buckets_[IdBucket(id)];
  entries_.PutId(id);
  entries_.Put32({reference, bucket});
  bucket = offset;
  return offset;
}

Bytes IdTable::HashTable() const { return Written(buckets_); }

std::uint32_t TextTable::Add(std::string_view text) {
  const std::uint32_t offset = entries_.Size();
  entries_.Put16(static_cast<std::uint32_t>(text.size()));
  entries_.PutText(text);
  entries_.Align('W');
  while (entries_.Size() - offset < 8) entries_.PutText("WWWW");  // the least size of an entry
  return offset;
}

std::uint32_t TypeTable::PointerTo(std::uint16_t variant_type) {
  constexpr std::uint32_t kPointer = 26;
  constexpr std::uint32_t kByReference = 0x4000;
  return Add(((kByReference | variant_type) << 16) | kPointer, Simple(variant_type));
}

std::uint32_t TypeTable::Named(std::uint32_t type_entry) {
  constexpr std::uint32_t kUserDefined = 29;
  return Add((0x7FFFU << 16) | kUserDefined, type_entry);
}

std::uint32_t TypeTable::Add(std::uint32_t head, std::uint32_t tail) {
  const auto [place, is_new] = offsets_.try_emplace({head, tail}, entries_.Size());
  if (is_new) entries_.Put32({head, tail});
  return place->second;
}

}  // namespace quorvane::typelib
