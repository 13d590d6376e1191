#include <windows.h>

#include "tests/support/code_pages.h"

namespace quorvane::testing {
namespace {

class NumberedPage final : public CodePage {
 public:
  explicit NumberedPage(UINT number, DWORD flags = 0) : number_(number), flags_(flags) {}

  std::string ToBytes(std::u16string_view characters) const override {
    if (characters.empty()) return {};
    const auto* const source = reinterpret_cast<const wchar_t*>(characters.data());
    std::string bytes(characters.size() * 2, '\0');
    bytes.resize(static_cast<std::size_t>(
        ::WideCharToMultiByte(number_, flags_, source, static_cast<int>(characters.size()),
                              bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
  }

  std::u16string FromBytes(std::string_view bytes) const override {
    if (bytes.empty()) return {};
    std::u16string characters(bytes.size(), u'\0');
    characters.resize(static_cast<std::size_t>(::MultiByteToWideChar(
        number_, 0, bytes.data(), static_cast<int>(bytes.size()),
        reinterpret_cast<wchar_t*>(characters.data()), static_cast<int>(characters.size()))));
    return characters;
  }

 private:
  UINT number_;
  DWORD flags_;
};

}  // namespace

const CodePage& Page1252() {
  static const NumberedPage kPage(1252);
  return kPage;
}

const CodePage& Page932() {
  static const NumberedPage kPage(932);
  return kPage;
}

std::unique_ptr<CodePage> MakeExactPage(int number) {
  const auto page = static_cast<UINT>(number);
  if (::IsValidCodePage(page) == 0) return nullptr;
  return std::make_unique<NumberedPage>(page, DWORD{WC_NO_BEST_FIT_CHARS});
}

}  // namespace quorvane::testing
