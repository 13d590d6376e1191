#include "platform/system_code_page.h"

#include <array>

#include "platform/windows/os_headers.h"
#include "runtime/integers.h"

namespace quorvane {
namespace {

class AnsiCodePage final : public CodePage {
 public:
  std::string ToBytes(std::u16string_view characters) const override {
    if (characters.empty()) return {};
    const auto* const source = reinterpret_cast<const wchar_t*>(characters.data());
    const int length = NarrowTo32(characters.size());
    const int needed =
        ::WideCharToMultiByte(CP_ACP, 0, source, length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(needed), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, source, length, bytes.data(), needed, nullptr, nullptr);
    return bytes;
  }

  std::u16string FromBytes(std::string_view bytes) const override {
    if (bytes.empty()) return {};
    const int length = NarrowTo32(bytes.size());
    const int needed = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
    std::u16string characters(static_cast<std::size_t>(needed), u'\0');
    ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), length,
                          reinterpret_cast<wchar_t*>(characters.data()), needed);
    return characters;
  }

  // What takes single characters, one after the other, does not ask for the length first.
  std::int16_t CodeOf(char16_t character) const override {
    std::array<char, 8> room;  // NOLINT(cppcoreguidelines-pro-type-member-init): the call fills it
    const auto unit = static_cast<wchar_t>(character);
    const int count =
        ::WideCharToMultiByte(CP_ACP, 0, &unit, 1, room.data(), room.size(), nullptr, nullptr);
    return CodeOfBytes({room.data(), static_cast<std::size_t>(count)});
  }
};

}  // namespace

const CodePage& systemCodePage() noexcept {
  static const AnsiCodePage kInstance;
  return kInstance;
}

}  // namespace quorvane
