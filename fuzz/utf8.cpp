// UTF-8 at the edges of the programs, names of files, and texts in JSON.
//
// Oracle: a reader by the table of well-formed sequences (first byte, range of the second, number
// of bytes), a writer by shifts, a reader of JSON's texts; and that each name of a file has a text
// that leads back to it.

#include "runtime/utf8.h"

#include <cstdlib>

#include "fuzz/target.h"
#include "platform/posix/system_text.h"
#include "programs/quorvane/json.h"

namespace quorvane::fuzz::utf8 {

struct Form {
  unsigned first, last;  // of the first byte
  unsigned least, most;  // of the second byte
  std::size_t length;    // in bytes
};
constexpr Form kForms[] = {
    {0x00, 0x7F, 0, 0, 1},       {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};

std::u16string ReadUtf8(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) {
    return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
  };
  std::u16string characters;
  for (std::size_t i = 0; i < bytes.size();) {
    std::size_t good = 0;
    char32_t code = 0xFFFD;
    for (const Form& form : kForms) {
      if (at(i) < form.first || at(i) > form.last) continue;
      good = 1;
      if (form.length > 1 && at(i + 1) >= form.least && at(i + 1) <= form.most) good = 2;
      while (good >= 2 && good < form.length && (at(i + good) & 0xC0) == 0x80) ++good;
      if (good < form.length) continue;
      constexpr unsigned kFirstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
      code = at(i) & kFirstBits[form.length];
      for (std::size_t part = 1; part < form.length; ++part)
        code = code << 6 | (at(i + part) & 0x3F);
    }
    i += std::max<std::size_t>(good, 1);
    if (code > 0xFFFF) {
      characters += static_cast<char16_t>(0xD7C0 + (code >> 10));
      characters += static_cast<char16_t>(0xDC00 | (code & 0x3FF));
    } else {
      characters += static_cast<char16_t>(code);
    }
  }
  return characters;
}

std::string WriteUtf8(std::u16string_view characters) {
  std::string bytes;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    char32_t code = characters[i];
    const bool is_pair =
        code >> 10 == 0x36 && i + 1 < characters.size() && characters[i + 1] >> 10 == 0x37;
    if (is_pair) {
      code = 0x10000 + ((code & 0x3FF) << 10) + (characters[++i] & 0x3FFU);
    } else if (code >> 11 == 0x1B) {
      code = 0xFFFD;
    }
    const int more = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr unsigned kMarks[] = {0, 0xC0, 0xE0, 0xF0};
    bytes += static_cast<char>(kMarks[more] | code >> (6 * more));
    for (int part = more - 1; part >= 0; --part)
      bytes += static_cast<char>(0x80 | (code >> (6 * part) & 0x3F));
  }
  return bytes;
}

// The bytes that a text of JSON stands for.
std::string ReadJson(const std::string& json) {
  Require(json.size() >= 2 && json.front() == '"' && json.back() == '"', "JSON's quotes");
  std::string bytes;
  for (std::size_t i = 1; i + 1 < json.size(); ++i) {
    Require(static_cast<unsigned char>(json[i]) >= 0x20 && json[i] != '"', "a bare sign in JSON");
    if (json[i] != '\\') {
      bytes += json[i];
      continue;
    }
    const char kind = json[++i];
    Require(i + 1 < json.size() && std::string_view("\"\\nu").find(kind) < 4, "an escape of JSON");
    if (kind == 'u') {
      bytes += static_cast<char>(std::strtoul(json.substr(i + 1, 4).c_str(), nullptr, 16));
      i += 4;
    } else {
      bytes += kind == 'n' ? '\n' : kind;
    }
  }
  return bytes;
}

void Run(Input input) {
  if (input.Byte(1) == 0) {
    const std::string bytes = input.Rest();
    const std::u16string characters = FromUtf8(bytes).Characters();
    Require(characters == ReadUtf8(bytes), "FromUtf8()");
    Require(ReadJson(programs::JsonText(bytes)) == WriteUtf8(characters), "JsonText()");
    std::string name = bytes.substr(0, bytes.find('\0'));
    std::erase(name, '\\');
    Require(SystemFileName(FileNameFrom(name).Characters()) == name, "a file's name");
  } else {
    const std::u16string characters = input.Characters(SIZE_MAX);
    Require(ToUtf8(characters) == WriteUtf8(characters), "ToUtf8()");
  }
}

const Registered kTarget("utf8", Run);

}  // namespace quorvane::fuzz::utf8
