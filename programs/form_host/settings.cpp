#include "programs/form_host/settings.h"

#include <algorithm>

#include "platform/conversions.h"
#include "programs/common/options.h"
#include "programs/form_host/form_file.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

std::string AllNames() {
  std::string names;
  for (const identities::Property& setting : kSettings)
    names += (names.empty() ? "" : ", ") + std::string(setting.name);
  return names;
}

}  // namespace

std::string Display(const Text& setting, const TaggedValue& value) {
  const bool is_secret = setting == Text(u"Password") && !ToText(value).IsEmpty();
  return is_secret ? "\"********\"" : FormatValue(value);
}

Change ParseChange(std::string_view word) {
  const std::size_t equals = word.find('=');
  if (equals == std::string_view::npos)
    throw UsageError("--set wants NAME=VALUE: '" + std::string(word) + "'");
  Change change{FromUtf8(word.substr(0, equals)), FromUtf8(word.substr(equals + 1))};
  const bool is_known = std::ranges::any_of(kSettings, [&](const identities::Property& setting) {
    return change.setting == FromUtf8(setting.name);
  });
  if (!is_known) {
    throw UsageError("--set knows no setting '" + ToUtf8(change.setting) + "', only " + AllNames());
  }
  return change;
}

Text TextToEdit(const Text& setting, const TaggedValue& value) {
  const Text plain = ToText(value);
  if (setting == Text(u"Password") && !plain.IsEmpty()) return u"********";
  const bool is_open =
      std::ranges::all_of(plain.Characters(), [](char16_t c) { return c >= 0x20; });
  const bool looks_quoted = plain.Characters().starts_with(u'"');
  return is_open && !looks_quoted ? plain : FromUtf8(FormatValue(value));
}

TaggedValue ValueOfEdited(const Text& text) {
  if (!text.Characters().starts_with(u'"')) return text;
  return ParseForm("Value = " + ToUtf8(text)).front().value;
}

}  // namespace quorvane::programs
