#include "runtime/text.h"

#include <utility>

#include "runtime/integers.h"

namespace quorvane {

Text::Text(std::u16string characters) : characters_(std::move(characters)), present_(true) {}

Text::Text(std::u16string_view characters) : characters_(characters), present_(true) {}

Text::Text(const char16_t* characters) : characters_(characters), present_(true) {}

Text::Text(std::size_t count, char16_t character) : characters_(count, character), present_(true) {}

std::int32_t Text::Length() const { return NarrowTo32(characters_.size()); }

Text operator+(const Text& left, const Text& right) {
  return Text(left.characters_ + right.characters_);
}

}  // namespace quorvane
