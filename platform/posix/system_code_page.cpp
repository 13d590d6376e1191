#include "platform/system_code_page.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/posix/code_page.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

constexpr int kWesternEuropean = 1252;

// The page in force. It is made at its first use, not where it is asked for: making its tables can
// fail.
std::unique_ptr<CodePage>& Page() {
  static std::unique_ptr<CodePage> page = MakeCodePage(kWesternEuropean);
  if (!page) Raise(ErrorNumber::kLibraryNotFound);
  return page;
}

class SystemCodePage final : public CodePage {
 public:
  std::string ToBytes(std::u16string_view characters) const override {
    return Page()->ToBytes(characters);
  }
  std::u16string FromBytes(std::string_view bytes) const override {
    return Page()->FromBytes(bytes);
  }
  std::int16_t CodeOf(char16_t character) const override { return Page()->CodeOf(character); }
};

}  // namespace

const CodePage& systemCodePage() noexcept {
  static const SystemCodePage kInstance;
  return kInstance;
}

bool SetSystemCodePage(int number) {
  auto page = MakeCodePage(number);
  if (!page) return false;
  Page() = std::move(page);
  return true;
}

}  // namespace quorvane
