// Finds the unwinding table of a frame, in place of the run-time library's own way, where tables
// are registered at load: with the run-time library's DLL when the host has one in memory, and are
// then not found here, so that the first exception would end such a host. It also makes a lock at
// each load that nobody gives back.
//
// Here nothing is registered: the tables are a section of this module's own image, written by the
// linker in the form of DWARF's .eh_frame, and are searched from the front. Exceptions are rare.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/windows/os_headers.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier): the linker's name

namespace {

using Byte = std::uint8_t;

template <class Number>
Number Read(const Byte* place) {
  Number number{};
  std::memcpy(&number, place, sizeof number);
  return number;
}

// The two encodings of addresses that the compiler uses for this machine.
constexpr Byte kAbsolute = 0x00;
constexpr Byte kRelative = 0x1B;  // to the place of the value itself, 32 bits

struct Table {
  const Byte* begin = nullptr;
  const Byte* end = nullptr;
};

Table FindTable() {
  const auto* const image = reinterpret_cast<const Byte*>(&__ImageBase);
  const auto* const headers =
      reinterpret_cast<const IMAGE_NT_HEADERS32*>(image + __ImageBase.e_lfanew);
  const auto* section = reinterpret_cast<const IMAGE_SECTION_HEADER*>(
      reinterpret_cast<const Byte*>(&headers->OptionalHeader) +
      headers->FileHeader.SizeOfOptionalHeader);
  for (WORD i = 0; i < headers->FileHeader.NumberOfSections; ++i, ++section) {
    if (std::memcmp(section->Name, ".eh_frame", IMAGE_SIZEOF_SHORT_NAME) != 0) continue;
    const Byte* const begin = image + section->VirtualAddress;
    return {begin, begin + section->Misc.VirtualSize};
  }
  return {};
}

void SkipLeb128(const Byte*& place) {
  while ((*place++ & 0x80) != 0) {
  }
}

// How the frames below this common entry give their address: the letter R of its augmentation.
Byte AddressEncoding(const Byte* common) {
  const auto* letter = reinterpret_cast<const char*>(common + 9);  // behind length, id and version
  const Byte* data = common + 9 + std::strlen(letter) + 1;
  if (*letter != 'z') return kAbsolute;
  SkipLeb128(data);  // alignment of code
  SkipLeb128(data);  // alignment of data
  ++data;            // column of the return address
  SkipLeb128(data);  // size of what follows
  for (++letter; *letter != '\0'; ++letter) {
    if (*letter == 'R') return *data;
    if (*letter == 'P') data += 1 + sizeof(void*);
    if (*letter == 'L') ++data;
  }
  return kAbsolute;
}

// What the unwinder wants to know beside the entry; its layout is its own.
struct Bases {
  const void* text;
  const void* data;
  const void* function;
};

}  // namespace

extern "C" {

const void* _Unwind_Find_FDE(const void* code, Bases* bases);

// An entry: its length, the distance back to its common entry (0 in a common entry), and the
// frame's address and size.
const void* _Unwind_Find_FDE(const void* code, Bases* bases) {
  const auto address = reinterpret_cast<std::uintptr_t>(code);
  const Table table = FindTable();
  const Byte* common = nullptr;
  Byte encoding = kAbsolute;
  for (const Byte* entry = table.begin; entry + 16 <= table.end;) {
    const auto length = Read<std::uint32_t>(entry);
    const auto distance = Read<std::uint32_t>(entry + 4);
    if (length == 0) break;
    if (distance != 0) {
      const Byte* const own_common = entry + 4 - distance;
      if (own_common != common) encoding = AddressEncoding(own_common);
      common = own_common;
      auto begin = Read<std::uint32_t>(entry + 8);
      if (encoding == kRelative) begin += reinterpret_cast<std::uintptr_t>(entry + 8);
      if (address - begin < Read<std::uint32_t>(entry + 12)) {
        *bases = {nullptr, nullptr, reinterpret_cast<const void*>(begin)};
        return entry;
      }
    }
    entry += 4 + length;
  }
  return nullptr;
}

}  // extern "C"
