#include <algorithm>
#include <iterator>
#include <string>

#include "platform/posix/system_locale.h"

namespace quorvane {
namespace {

bool IsHighHalf(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowHalf(char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

std::wstring Decode(std::u16string_view text) {
  std::wstring characters;
  characters.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (IsHighHalf(unit) && i + 1 < text.size() && IsLowHalf(text[i + 1])) {
      const auto low = static_cast<unsigned>(text[++i]);
      characters += static_cast<wchar_t>(0x10000 + ((unit - 0xD800U) << 10) + (low - 0xDC00U));
    } else {
      characters += static_cast<wchar_t>(unit);
    }
  }
  return characters;
}

std::wstring HalvesIn(const std::wstring& characters) {
  std::wstring halves;
  std::ranges::copy_if(characters, std::back_inserter(halves),
                       [](wchar_t c) { return c >= 0xD800 && c <= 0xDFFF; });
  return halves;
}

class LocaleCollation final : public Collation {
 public:
  explicit LocaleCollation(const std::locale& locale)
      : locale_(locale),
        letters_(std::use_facet<std::ctype<wchar_t>>(locale_)),
        order_(std::use_facet<std::collate<wchar_t>>(locale_)),
        folds_ascii_plainly_(LowersAsciiPlainly() && TellsAsciiApart()) {}

  bool AreEqual(std::u16string_view left, std::u16string_view right) const override {
    const std::wstring a = Lower(left);
    const std::wstring b = Lower(right);
    // The C library has no place in its order for single halves and takes all for equal.
    return Compare(a, b) == 0 && HalvesIn(a) == HalvesIn(b);
  }

  bool FoldsAsciiPlainly() const override { return folds_ascii_plainly_; }

 private:
  [[nodiscard]] std::wstring Lower(std::u16string_view text) const {
    std::wstring characters = Decode(text);
    letters_.tolower(characters.data(), characters.data() + characters.size());
    return characters;
  }

  [[nodiscard]] int Compare(const std::wstring& a, const std::wstring& b) const {
    return order_.compare(a.data(), a.data() + a.size(), b.data(), b.data() + b.size());
  }

  // False in Turkish, where I and i are two letters.
  [[nodiscard]] bool LowersAsciiPlainly() const {
    for (wchar_t c = 0x20; c <= 0x7E; ++c) {
      const bool capital = c >= L'A' && c <= L'Z';
      if (letters_.tolower(c) != (capital ? c + (L'a' - L'A') : c)) return false;
    }
    return true;
  }

  // C libraries give different texts different places in the order, whatever letters the locale
  // joins to one. The texts tried are those that would be the same if Hungarian, which joins most,
  // went by its letters alone.
  [[nodiscard]] bool TellsAsciiApart() const {
    return Compare(L"ddzdzdz", L"dzddzdz") != 0 && Compare(L" ", L"-") != 0 &&
           Compare(L"-", L"") != 0;
  }

  std::locale locale_;
  const std::ctype<wchar_t>& letters_;
  const std::collate<wchar_t>& order_;
  bool folds_ascii_plainly_;
};

}  // namespace

std::unique_ptr<Collation> MakeCollation(const std::locale& locale) {
  return std::make_unique<LocaleCollation>(locale);
}

}  // namespace quorvane
