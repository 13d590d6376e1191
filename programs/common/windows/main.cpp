#include <windows.h>
// Behind windows.h, which it needs.
#include <shellapi.h>

#include <memory>
#include <vector>

#include "programs/common/customs.h"
#include "programs/common/program.h"
#include "runtime/utf8.h"

namespace {

// The 16-bit command line: the 8-bit words that main() receives have lost what the code page lacks.
std::vector<std::string> Words() {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&::LocalFree)> words(
      ::CommandLineToArgvW(::GetCommandLineW(), &count), &::LocalFree);
  std::vector<std::string> result;
  for (int i = 1; words && i < count; ++i) {
    const auto* const word = reinterpret_cast<const char16_t*>(words.get()[i]);
    result.push_back(quorvane::ToUtf8(quorvane::Text(word)));
  }
  return result;
}

}  // namespace

int main() {
  quorvane::programs::EndOnInterrupt();
  const std::vector<std::string> words = Words();
  return quorvane::programs::ProgramMain(words);
}
