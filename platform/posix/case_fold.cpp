#include "platform/posix/case_fold.h"

#include <locale.h>
#include <wctype.h>

namespace quorvane {
namespace {

// The C library's own rules for all of Unicode, whatever locale the program runs in.
locale_t UnicodeLocale() {
  static const locale_t kLocale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return kLocale;
}

char16_t UpperCase(char16_t character) {
  if (character < 0x80) {
    const bool lower = character >= u'a' && character <= u'z';
    return lower ? static_cast<char16_t>(character - u'a' + u'A') : character;
  }
  const locale_t locale = UnicodeLocale();
  if (locale == nullptr) return character;
  const wint_t upper = ::towupper_l(character, locale);
  return upper <= 0xFFFF ? static_cast<char16_t>(upper) : character;
}

}  // namespace

std::u16string FoldCase(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& character : folded) character = UpperCase(character);
  return folded;
}

}  // namespace quorvane
