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
  std::u16string& characters = text.Edit();
  if (wanted < characters.size()) characters.resize(wanted);
  return text;
}

Text RepeatedCharacter(std::int32_t count, char16_t character) {
  return Text(CountOf(count), character);
}

Text TrimSpaces(Text text) {
  std::u16string& characters = text.Edit();
  characters.erase(characters.find_last_not_of(u' ') + 1);
  characters.erase(0, characters.find_first_not_of(u' '));
  return text;
}

}  // namespace quorvane
