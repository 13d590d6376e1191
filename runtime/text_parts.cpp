#include "runtime/text_parts.h"

#include <string>
#include <utility>

#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

std::size_t CountOf(std::int32_t count) {
  if (count < 0) Raise(ErrorNumber::kInvalidProcedureCall);
  return static_cast<std::size_t>(count);
}

}  // namespace

Text FirstCharacters(Text text, std::int32_t count) {
  const std::size_t wanted = CountOf(count);
  std::u16string characters = std::move(text).Release();
  if (wanted < characters.size()) characters.resize(wanted);
  return Text(std::move(characters));
}

Text RepeatedCharacter(std::int32_t count, char16_t character) {
  return Text(CountOf(count), character);
}

Text FixedLength(Text text, std::int32_t length) {
  const std::size_t wanted = CountOf(length);
  std::u16string characters = std::move(text).Release();
  characters.resize(wanted, u' ');
  return Text(std::move(characters));
}

Text TrimSpaces(Text text) {
  std::u16string characters = std::move(text).Release();
  characters.erase(characters.find_last_not_of(u' ') + 1);
  characters.erase(0, characters.find_first_not_of(u' '));
  return Text(std::move(characters));
}

}  // namespace quorvane
