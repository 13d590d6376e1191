#include <memory>

#include "platform/posix/system_text.h"
#include "tests/support/code_pages.h"

namespace quorvane::testing {

const CodePage& Page1252() {
  static const std::unique_ptr<CodePage> kPage = MakeCodePage(1252);
  return *kPage;
}

const CodePage& Page932() {
  static const std::unique_ptr<CodePage> kPage = MakeCodePage(932);
  return *kPage;
}

std::unique_ptr<CodePage> MakeExactPage(int number) { return MakeCodePage(number); }

}  // namespace quorvane::testing
