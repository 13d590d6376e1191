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

}  // namespace

const std::locale& systemLocale() {
  static const std::locale kLocale = LocaleOfEnvironment();
  return kLocale;
}

const Collation& systemCollation() {
  static const std::unique_ptr<Collation> kCollation = MakeCollation(systemLocale());
  return *kCollation;
}

const ShortDate& systemShortDate() {
  static const std::unique_ptr<ShortDate> kShortDate = MakeShortDate(systemLocale());
  return *kShortDate;
}

}  // namespace quorvane
