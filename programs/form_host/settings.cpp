#include "programs/form_host/settings.h"

#include <algorithm>

#include "programs/common/options.h"
#include "programs/form_host/form_file.h"
#include "runtime/utf8.h"

namespace quorvane::examples {
namespace {

std::string AllNames() {
  std::string names;
  for (const char16_t* const name : kSettings)
    names += (names.empty() ? "" : ", ") + ToUtf8(Text(name));
  return names;
}

}  // namespace

std::string Display(const Text& setting, const TaggedValue& value) {
  const bool is_secret = setting == Text(u"Password") && !value.ToText().IsEmpty();
  return is_secret ? "\"********\"" : FormatValue(value);
}

Change ParseChange(std::string_view word) {
  const std::size_t equals = word.find('=');
  if (equals == std::string_view::npos)
    throw UsageError("--set wants NAME=VALUE: '" + std::string(word) + "'");
  Change change{FromUtf8(word.substr(0, equals)), FromUtf8(word.substr(equals + 1))};
  const bool is_known = std::ranges::any_of(
      kSettings, [&](const char16_t* name) { return change.setting == Text(name); });
  if (!is_known) {
    throw UsageError("--set knows no setting '" + ToUtf8(change.setting) + "', only " + AllNames());
  }
  return change;
}

}  // namespace quorvane::examples
