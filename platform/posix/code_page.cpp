#include "platform/posix/system_text.h"

#include <iconv.h>

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/system_code_page.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

constexpr int kWesternEuropean = 1252;
constexpr char16_t kNone = 0xFFFF;  // never a character
constexpr std::size_t kUnitCount = 0x10000;

// One direction of the system's converter between a page and UTF-16.
class Converter {
 public:
  Converter(const std::string& to, const std::string& from)
      : converter_(::iconv_open(to.c_str(), from.c_str()), &::iconv_close) {}

  // iconv_open's failure is the address -1.
  [[nodiscard]] bool IsKnown() const {
    return reinterpret_cast<std::intptr_t>(converter_.get()) != -1;
  }

  // One whole character, or nothing when the converter refuses it or wants more bytes.
  std::optional<std::string> Convert(std::string character) {
    ::iconv(converter_.get(), nullptr, nullptr, nullptr, nullptr);
    std::array<char, 16> room{};
    char* source = character.data();
    std::size_t source_left = character.size();
    char* target = room.data();
    std::size_t target_left = room.size();
    if (::iconv(converter_.get(), &source, &source_left, &target, &target_left) != 0) return {};
    if (source_left != 0) return std::nullopt;
    // Some converters keep a letter back, as an accent might follow.
    ::iconv(converter_.get(), nullptr, nullptr, &target, &target_left);
    return std::string(room.data(), target);
  }

  // The same to UTF-16; nothing but a character of one unit counts.
  char16_t UnitOf(std::string character) {
    const auto utf16 = Convert(std::move(character));
    char16_t unit = kNone;
    if (utf16 && utf16->size() == sizeof unit) std::memcpy(&unit, utf16->data(), sizeof unit);
    return unit;
  }

 private:
  std::unique_ptr<void, decltype(&::iconv_close)> converter_;
};

// Where Windows parts from the converter: bytes of single characters that the converter leaves
// unused, or takes for another. Most are for private use, one after the other.
struct OwnBytes {
  int page;
  std::string_view bytes;
  char16_t first;
};
constexpr auto kOwnBytes =
    std::to_array<OwnBytes>({{857, "\xD5\xE7\xF2", 0xF8BB},
                             {864, "%", u'%'},
                             {864, "\xA6\xA7\xFF", 0xF8BE},
                             {874, "\xDB\xDC\xDD\xDE\xFC\xFD\xFE\xFF", 0xF8C1},
                             {932, "\xA0\xFD\xFE\xFF", 0xF8F0},
                             {936, "\xFF", 0xF8F5},
                             {949, "\xFF", 0xF8F7},
                             {950, "\xFF", 0xF8F8},
                             {1253, "\xAA\xD2\xFF", 0xF8F9},
                             {1255, "\xCA", 0x05BA},
                             {1255, "\xD9\xDA\xDB\xDC\xDD\xDE\xDF\xFB\xFC\xFF", 0xF88D},
                             {1257, "\xA1\xA5", 0xF8FC}});

// Everything is asked of the converter once; after that the page is two constant tables, which any
// number of threads may read.
class TablePage final : public CodePage {
 public:
  TablePage(int number, Converter& to_units, Converter& to_bytes)
      : default_unit_(number == 932 ? u'\u30FB' : u'?'),
        pairs_(kUnitCount, default_unit_),
        bytes_(kUnitCount) {
    units_.fill(kNone);
    for (std::size_t first = 0; first < units_.size(); ++first) ReadFirstByte(first, to_units);
    TakeOwnBytes(number);
    FillUnusedBytes();
    for (std::size_t unit = 0; unit < kUnitCount; ++unit) {
      const auto character = static_cast<char16_t>(unit);
      const auto found = to_bytes.Convert({reinterpret_cast<const char*>(&character), 2});
      // Converters also take characters apart, or give them codes that are no characters.
      if (found && FromBytes(*found) == std::u16string{character}) bytes_[unit] = *found;
    }
    for (std::size_t byte = 0; byte < units_.size(); ++byte) {
      if (leads_.test(byte) || units_[byte] == default_unit_) continue;
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
      if (!leads_.test(first)) {
        characters += units_[first];
      } else if (i + 1 < bytes.size() && bytes[i + 1] != '\0') {
        const auto second = static_cast<unsigned char>(bytes[++i]);
        characters += pairs_[static_cast<std::size_t>(first << 8 | second)];
      } else {
        characters += default_unit_;
      }
    }
    return characters;
  }

 private:
  void ReadFirstByte(std::size_t first, Converter& to_units) {
    units_[first] = to_units.UnitOf({static_cast<char>(first)});
    for (std::size_t second = 0; second < 256 && units_[first] == kNone; ++second) {
      const char16_t unit = to_units.UnitOf({static_cast<char>(first), static_cast<char>(second)});
      if (unit == kNone) continue;
      leads_.set(first);
      pairs_[first << 8 | second] = unit;
    }
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
    const bool has_pairs = leads_.any();
    for (std::size_t byte = 0x80; byte < units_.size(); ++byte) {
      if (units_[byte] != kNone || leads_.test(byte)) continue;
      units_[byte] = byte <= 0x9F ? static_cast<char16_t>(byte) : default_unit_;
      if (has_pairs && byte > 0x80) leads_.set(byte);
    }
  }

  char16_t default_unit_;
  std::array<char16_t, 256> units_{};
  std::bitset<256> leads_;          // the first bytes of pairs
  std::vector<char16_t> pairs_;     // by lead byte and second byte
  std::vector<std::string> bytes_;  // by unit; empty for one that the page lacks
};

// The page in force. It is made at its first use, not where it is asked for: making its tables can
// fail.
std::unique_ptr<CodePage>& Page() {
  static std::unique_ptr<CodePage> page = MakeCodePage(kWesternEuropean);
  if (!page) Raise(ErrorNumber::kLibraryNotFound);
  return page;
}

class SystemCodePage final : public CodePage {
 public:
  std::string ToBytes(std::u16string_view characters) const override {
    return Page()->ToBytes(characters);
  }
  std::u16string FromBytes(std::string_view bytes) const override {
    return Page()->FromBytes(bytes);
  }
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

const CodePage& systemCodePage() noexcept {
  static const SystemCodePage kInstance;
  return kInstance;
}

bool SetSystemCodePage(int number) {
  auto page = MakeCodePage(number);
  if (!page) return false;
  Page() = std::move(page);
  return true;
}

}  // namespace quorvane
