#include "programs/quorvane/code_page_choice.h"

#include "programs/common/options.h"

namespace quorvane::programs {

void ChooseCodePage(const std::string& /*number*/) {
  throw UsageError("--code-page is for the Linux program; Windows has a code page of its own");
}

}  // namespace quorvane::programs
