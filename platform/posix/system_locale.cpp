#include "platform/posix/system_locale.h"

#include <stdexcept>

namespace quorvane {
namespace {

// Null when no locale of that name is installed.
std::unique_ptr<std::locale> Named(const char* name) {
  try {
    return std::make_unique<std::locale>(name);
  } catch (const std::runtime_error&) {
    return nullptr;
  }
}

std::locale LocaleOfEnvironment() {
  const auto named = Named("");
  if (named && named->name() != "C" && named->name() != "POSIX") return *named;
  const auto neutral = Named("C.UTF-8");
  return neutral ? *neutral : std::locale::classic();
}

// Each is made of the locale at its first use, not where it is asked for: reading a locale can
// fail.
class SystemCollation final : public Collation {
 public:
  bool AreEqual(std::u16string_view left, std::u16string_view right) const override {
    return Made().AreEqual(left, right);
  }
  bool FoldsAsciiPlainly() const override { return Made().FoldsAsciiPlainly(); }

 private:
  static const Collation& Made() {
    static const std::unique_ptr<Collation> kMade = MakeCollation(systemLocale());
    return *kMade;
  }
};

class SystemShortDate final : public ShortDate {
 public:
  Text Format(const CalendarDay& day) const override {
    static const std::unique_ptr<ShortDate> kMade = MakeShortDate(systemLocale());
    return kMade->Format(day);
  }
};

}  // namespace

const std::locale& systemLocale() {
  static const std::locale kLocale = LocaleOfEnvironment();
  return kLocale;
}

const Collation& systemCollation() noexcept {
  static const SystemCollation kInstance;
  return kInstance;
}

const ShortDate& systemShortDate() noexcept {
  static const SystemShortDate kInstance;
  return kInstance;
}

}  // namespace quorvane
