#include "platform/collation.h"

#include <algorithm>
#include <array>
#include <limits>

#include "platform/windows/os_headers.h"

namespace quorvane {
namespace {

// Languages whose collation joins none of the plain ASCII letters: any other may (Hungarian takes
// dz and ddz, Danish aa, Czech ch for one letter), and then "cS" is no longer "cs".
constexpr std::array<WORD, 13> kWithoutJoinedLetters{
    LANG_ENGLISH,    LANG_GERMAN,   LANG_FRENCH,  LANG_ITALIAN,   LANG_DUTCH,
    LANG_PORTUGUESE, LANG_POLISH,   LANG_RUSSIAN, LANG_UKRAINIAN, LANG_GREEK,
    LANG_CHINESE,    LANG_JAPANESE, LANG_KOREAN};

int LengthOf(std::u16string_view text) {
  constexpr std::size_t kLongest = std::numeric_limits<int>::max();
  return static_cast<int>(std::min(text.size(), kLongest));
}

const wchar_t* PointerOf(std::u16string_view text) {
  return text.empty() ? L"" : reinterpret_cast<const wchar_t*>(text.data());
}

class SystemCollation final : public Collation {
 public:
  bool AreEqual(std::u16string_view left, std::u16string_view right) const override {
    return ::CompareStringW(LOCALE_SYSTEM_DEFAULT, NORM_IGNORECASE, PointerOf(left), LengthOf(left),
                            PointerOf(right), LengthOf(right)) == CSTR_EQUAL;
  }

  bool FoldsAsciiPlainly() const override {
    static const bool kPlain =
        std::ranges::count(kWithoutJoinedLetters, PRIMARYLANGID(::GetSystemDefaultLangID())) > 0;
    return kPlain;
  }
};

}  // namespace

const Collation& systemCollation() noexcept {
  static const SystemCollation kInstance;
  return kInstance;
}

}  // namespace quorvane
