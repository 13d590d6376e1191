#include "programs/quorvane/code_page_choice.h"

#include <charconv>

#include "platform/posix/system_text.h"
#include "programs/common/options.h"

namespace quorvane::programs {

void ChooseCodePage(const std::string& number) {
  int value = 0;
  const char* const end = number.data() + number.size();
  const auto [rest, error] = std::from_chars(number.data(), end, value);
  if (error != std::errc() || rest != end || !SetSystemCodePage(value))
    throw UsageError("unknown code page '" + number + "'");
}

}  // namespace quorvane::programs
