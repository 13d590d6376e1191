#include "runtime/utf8.h"

#include <cstddef>

namespace quorvane {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// The shape of a sequence by its first byte: how many bytes follow, and what the first of them may
// be, which shuts out over-long forms, surrogates and values beyond U+10FFFF (RFC 3629, section 4).
struct Lead {
  int following = -1;
  unsigned char lowest = 0x80;
  unsigned char highest = 0xBF;
};

Lead LeadOf(unsigned char byte) {
  if (byte < 0x80) return {0};
  if (byte >= 0xC2 && byte <= 0xDF) return {1};
  if (byte == 0xE0) return {2, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {2};
  if (byte == 0xF0) return {3, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {3};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {};
}

char32_t TakeCodePoint(std::string_view& bytes) {
  const auto first = static_cast<unsigned char>(bytes.front());
  bytes.remove_prefix(1);
  Lead lead = LeadOf(first);
  if (lead.following < 0) return kReplacement;
  if (lead.following == 0) return first;
  char32_t code_point = first & (0x3FU >> lead.following);
  for (; lead.following > 0; --lead.following) {
    const unsigned char next = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.front());
    if (next < lead.lowest || next > lead.highest) return kReplacement;
    code_point = (code_point << 6) | (next & 0x3FU);
    lead.lowest = 0x80;
    lead.highest = 0xBF;
    bytes.remove_prefix(1);
  }
  return code_point;
}

void AppendUtf16(std::u16string& characters, char32_t code_point) {
  if (code_point < 0x10000) {
    characters += static_cast<char16_t>(code_point);
    return;
  }
  characters += static_cast<char16_t>(0xD800 + ((code_point - 0x10000) >> 10));
  characters += static_cast<char16_t>(0xDC00 + ((code_point - 0x10000) & 0x3FF));
}

bool IsHighHalf(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowHalf(char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

char32_t TakeCodePoint(std::u16string_view& characters) {
  const char16_t first = characters.front();
  characters.remove_prefix(1);
  if (IsHighHalf(first) && !characters.empty() && IsLowHalf(characters.front())) {
    const char16_t second = characters.front();
    characters.remove_prefix(1);
    return 0x10000U + ((first - 0xD800U) << 10) + (second - 0xDC00U);
  }
  return IsHighHalf(first) || IsLowHalf(first) ? kReplacement : char32_t{first};
}

void AppendUtf8(std::string& bytes, char32_t code_point) {
  const auto append = [&bytes](char32_t byte) { bytes += static_cast<char>(byte); };
  if (code_point < 0x80) return append(code_point);
  if (code_point < 0x800) {
    append(0xC0 | (code_point >> 6));
  } else {
    if (code_point < 0x10000) {
      append(0xE0 | (code_point >> 12));
    } else {
      append(0xF0 | (code_point >> 18));
      append(0x80 | ((code_point >> 12) & 0x3F));
    }
    append(0x80 | ((code_point >> 6) & 0x3F));
  }
  append(0x80 | (code_point & 0x3F));
}

}  // namespace

Text FromUtf8(std::string_view bytes) {
  std::u16string characters;
  while (!bytes.empty()) AppendUtf16(characters, TakeCodePoint(bytes));
  return Text(std::move(characters));
}

std::string ToUtf8(const Text& text) {
  std::string bytes;
  std::u16string_view characters = text.Characters();
  while (!characters.empty()) AppendUtf8(bytes, TakeCodePoint(characters));
  return bytes;
}

}  // namespace quorvane
