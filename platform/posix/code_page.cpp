#include "platform/posix/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {
namespace {

// One direction of the system's converter between a page and UTF-16.
class Converter {
 public:
  Converter(const std::string& to, const std::string& from)
      : converter_(::iconv_open(to.c_str(), from.c_str())) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (IsKnown()) ::iconv_close(converter_);
  }

  // iconv_open's failure is the address -1.
  [[nodiscard]] bool IsKnown() const { return reinterpret_cast<std::intptr_t>(converter_) != -1; }

  // One whole character, or nothing when the converter refuses it or wants more bytes.
  std::optional<std::string> Convert(std::string character) {
    ::iconv(converter_, nullptr, nullptr, nullptr, nullptr);
    std::array<char, 16> room{};
    char* source = character.data();
    std::size_t source_left = character.size();
    char* target = room.data();
    std::size_t target_left = room.size();
    const std::size_t result = ::iconv(converter_, &source, &source_left, &target, &target_left);
    if (result != 0 || source_left != 0) return std::nullopt;
    // Some converters keep a letter back, as an accent might follow.
    ::iconv(converter_, nullptr, nullptr, &target, &target_left);
    return std::string(room.data(), target);
  }

 private:
  iconv_t converter_;
};

constexpr char16_t kNone = 0xFFFF;  // never a character
constexpr std::size_t kUnitCount = 0x10000;

std::string AsUtf16(std::size_t unit) {
  return {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
}

char16_t UnitOf(const std::optional<std::string>& utf16) {
  if (!utf16 || utf16->size() != 2) return kNone;
  return static_cast<char16_t>(static_cast<unsigned char>((*utf16)[0]) |
                               static_cast<unsigned char>((*utf16)[1]) << 8);
}

// Where Windows parts from the converter: bytes of single characters that the converter leaves
// unused, or takes for another. Most are for private use, one after the other.
struct OwnBytes {
  int page;
  std::string_view bytes;
  char16_t first;
};
constexpr std::array kOwnBytes{OwnBytes{857, "\xD5\xE7\xF2", 0xF8BB},
                               OwnBytes{864, "%", u'%'},
                               OwnBytes{864, "\xA6\xA7\xFF", 0xF8BE},
                               OwnBytes{874, "\xDB\xDC\xDD\xDE\xFC\xFD\xFE\xFF", 0xF8C1},
                               OwnBytes{932, "\xA0\xFD\xFE\xFF", 0xF8F0},
                               OwnBytes{936, "\xFF", 0xF8F5},
                               OwnBytes{949, "\xFF", 0xF8F7},
                               OwnBytes{950, "\xFF", 0xF8F8},
                               OwnBytes{1253, "\xAA\xD2\xFF", 0xF8F9},
                               OwnBytes{1255, "\xCA", 0x05BA},
                               OwnBytes{1255, "\xD9\xDA\xDB\xDC\xDD\xDE\xDF\xFB\xFC\xFF", 0xF88D},
                               OwnBytes{1257, "\xA1\xA5", 0xF8FC}};

// Everything is asked of the converter once; after that the page is two constant tables, which any
// number of threads may read.
class TablePage final : public CodePage {
 public:
  TablePage(int number, Converter& to_units, Converter& to_bytes)
      : default_unit_(number == 932 ? u'\u30FB' : u'?'), bytes_(kUnitCount) {
    units_.fill(kNone);
    for (std::size_t first = 0; first < units_.size(); ++first) ReadFirstByte(first, to_units);
    TakeOwnBytes(number);
    FillUnusedBytes();
    for (std::size_t unit = 0; unit < kUnitCount; ++unit) {
      const auto found = to_bytes.Convert(AsUtf16(unit));
      // Converters also take characters apart, or give them codes that are no characters.
      if (found && FromBytes(*found) == std::u16string(1, static_cast<char16_t>(unit)))
        bytes_[unit] = *found;
    }
    for (std::size_t byte = 0; byte < units_.size(); ++byte) {
      if (!pairs_[byte].empty() || units_[byte] == default_unit_) continue;
      std::string& bytes = bytes_[units_[byte]];
      if (bytes.empty()) bytes = static_cast<char>(byte);
    }
  }

  [[nodiscard]] bool HoldsAscii() const {
    for (std::size_t code = 0; code < 0x80; ++code)
      if (units_[code] != code || bytes_[code] != std::string(1, static_cast<char>(code)))
        return false;
    return true;
  }

  std::string ToBytes(std::u16string_view characters) const override {
    std::string bytes;
    bytes.reserve(characters.size());
    for (const char16_t unit : characters) bytes += bytes_[unit].empty() ? "?" : bytes_[unit];
    return bytes;
  }

  std::int16_t CodeOf(char16_t character) const override { return CodeOfBytes(bytes_[character]); }

  std::u16string FromBytes(std::string_view bytes) const override {
    std::u16string characters;
    characters.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const auto first = static_cast<unsigned char>(bytes[i]);
      if (pairs_[first].empty()) {
        characters += units_[first];
      } else if (i + 1 < bytes.size() && bytes[i + 1] != '\0') {
        characters += pairs_[first][static_cast<unsigned char>(bytes[++i])];
      } else {
        characters += default_unit_;
      }
    }
    return characters;
  }

 private:
  void ReadFirstByte(std::size_t first, Converter& to_units) {
    units_[first] = UnitOf(to_units.Convert({static_cast<char>(first)}));
    if (units_[first] != kNone) return;
    std::vector<char16_t> pairs(256, default_unit_);
    bool leads = false;
    for (std::size_t second = 0; second < pairs.size(); ++second) {
      const char16_t unit =
          UnitOf(to_units.Convert({static_cast<char>(first), static_cast<char>(second)}));
      if (unit == kNone) continue;
      pairs[second] = unit;
      leads = true;
    }
    if (leads) pairs_[first] = std::move(pairs);
  }

  void TakeOwnBytes(int number) {
    for (const OwnBytes& own : kOwnBytes) {
      if (own.page != number) continue;
      char16_t unit = own.first;
      for (const char byte : own.bytes) units_[static_cast<unsigned char>(byte)] = unit++;
    }
  }

  // A byte that stands for nothing is the control character of its value, or, in a page of pairs,
  // leads some without characters.
  void FillUnusedBytes() {
    const bool has_pairs =
        std::ranges::any_of(pairs_, [](const auto& pairs) { return !pairs.empty(); });
    for (std::size_t byte = 0x80; byte < units_.size(); ++byte) {
      if (units_[byte] != kNone || !pairs_[byte].empty()) continue;
      units_[byte] = byte <= 0x9F ? static_cast<char16_t>(byte) : default_unit_;
      if (has_pairs && byte > 0x80) pairs_[byte].assign(256, default_unit_);
    }
  }

  char16_t default_unit_;
  std::array<char16_t, 256> units_{};
  std::array<std::vector<char16_t>, 256> pairs_;  // by lead byte; empty for a byte that leads none
  std::vector<std::string> bytes_;                // by unit; empty for one that the page lacks
};

}  // namespace

std::unique_ptr<CodePage> MakeCodePage(int number) {
  const std::string name = "CP" + std::to_string(number);
  Converter to_units("UTF-16LE", name);
  Converter to_bytes(name, "UTF-16LE");
  if (!to_units.IsKnown() || !to_bytes.IsKnown()) return nullptr;
  auto page = std::make_unique<TablePage>(number, to_units, to_bytes);
  if (!page->HoldsAscii()) return nullptr;
  return page;
}

}  // namespace quorvane
