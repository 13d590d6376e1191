#include "runtime/text_parts.h"

#include <string>
#include <string_view>

#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

std::size_t CountOf(std::int32_t count) {
  if (count < 0) Raise(ErrorNumber::kInvalidProcedureCall);
  return static_cast<std::size_t>(count);
}

}  // namespace

Text FirstCharacters(const Text& text, std::int32_t count) {
  return Text(text.Characters().substr(0, CountOf(count)));
}

Text RepeatedCharacter(std::int32_t count, char16_t character) {
  return Text(CountOf(count), character);
}

Text FixedLength(const Text& text, std::int32_t length) {
  std::u16string characters = text.Characters();
  characters.resize(CountOf(length), u' ');
  return Text(std::move(characters));
}

Text TrimSpaces(const Text& text) {
  const std::u16string_view characters = text.Characters();
  const std::size_t first = characters.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return Text(u"");
  const std::size_t last = characters.find_last_not_of(u' ');
  return Text(characters.substr(first, last - first + 1));
}

}  // namespace quorvane
