#include "platform/posix/system_locale.h"

#include <ctime>
#include <iomanip>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

namespace quorvane {
namespace {

// Nothing when no locale of that name is installed.
std::optional<std::locale> Named(const char* name) {
  try {
    return std::locale(name);
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

std::locale LocaleOfEnvironment() {
  const auto named = Named("");
  if (named && named->name() != "C" && named->name() != "POSIX") return *named;
  return Named("C.UTF-8").value_or(std::locale::classic());
}

bool IsHighHalf(wchar_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowHalf(wchar_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

std::wstring Decode(std::u16string_view text) {
  std::wstring characters;
  characters.reserve(text.size());
  for (const wchar_t unit : text) {
    if (IsLowHalf(unit) && !characters.empty() && IsHighHalf(characters.back())) {
      characters.back() = 0x10000 + ((characters.back() - 0xD800) << 10) + (unit - 0xDC00);
    } else {
      characters += unit;
    }
  }
  return characters;
}

std::wstring HalvesIn(std::wstring characters) {
  std::erase_if(characters, [](wchar_t c) { return !IsHighHalf(c) && !IsLowHalf(c); });
  return characters;
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

// Made of the locale at its first use, not where it is asked for: reading a locale can fail.
class SystemCollation final : public Collation {
 public:
  bool AreEqual(std::u16string_view left, std::u16string_view right) const override {
    return Made().AreEqual(left, right);
  }
  bool FoldsAsciiPlainly() const override { return Made().FoldsAsciiPlainly(); }

 private:
  static const Collation& Made() {
    static const LocaleCollation kMade(systemLocale());
    return kMade;
  }
};

class SystemShortDate final : public ShortDate {
 public:
  Text Format(const CalendarDay& day) const override { return ShortDateIn(systemLocale(), day); }
};

}  // namespace

const std::locale& systemLocale() {
  static const std::locale kLocale = LocaleOfEnvironment();
  return kLocale;
}

Text ShortDateIn(const std::locale& locale, const CalendarDay& day) {
  std::tm fields{};
  fields.tm_year = day.year - 1900;
  fields.tm_mon = day.month - 1;
  fields.tm_mday = day.day;
  ::timegm(&fields);  // adds the other fields that a locale's form may ask for
  std::wostringstream stream;
  stream.imbue(locale);
  stream.exceptions(std::ios_base::badbit);  // or it would keep exhausted memory to itself
  stream << std::put_time(&fields, L"%x");
  const std::wstring written = stream.str();
  return Text(std::u16string(written.begin(), written.end()));
}

const ShortDate& systemShortDate() noexcept {
  static const SystemShortDate kInstance;
  return kInstance;
}

std::unique_ptr<Collation> MakeCollation(const std::locale& locale) {
  return std::make_unique<LocaleCollation>(locale);
}

const Collation& systemCollation() noexcept {
  static const SystemCollation kInstance;
  return kInstance;
}

}  // namespace quorvane
