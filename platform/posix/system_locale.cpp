#include "platform/posix/system_locale.h"

#include <optional>
#include <stdexcept>

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

}  // namespace

const std::locale& systemLocale() {
  static const std::locale kLocale = LocaleOfEnvironment();
  return kLocale;
}

}  // namespace quorvane
