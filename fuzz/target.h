#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::fuzz {

/// The bytes of one execution, taken from the front; behind their end all is zero and empty.
class Input {
 public:
  explicit Input(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

  [[nodiscard]] bool IsEmpty() const { return rest_.empty(); }
  /// 0 to `most`.
  [[nodiscard]] std::uint8_t Byte(std::uint8_t most = 255) {
    const std::string byte = Bytes(1);
    const auto value = static_cast<std::uint8_t>(byte.empty() ? 0 : byte[0]);
    return static_cast<std::uint8_t>(most == 255 ? value : value % (most + 1));
  }
  /// The low byte first.
  [[nodiscard]] std::uint16_t Number16() {
    const unsigned low = Byte();
    return static_cast<std::uint16_t>(low | static_cast<unsigned>(Byte()) << 8);
  }
  [[nodiscard]] std::int32_t Number32() {
    const std::uint32_t low = Number16();
    return static_cast<std::int32_t>(low | static_cast<std::uint32_t>(Number16()) << 16);
  }
  /// At most so many.
  [[nodiscard]] std::string Bytes(std::size_t count) {
    const auto taken = rest_.first(std::min(count, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return {reinterpret_cast<const char*>(taken.data()), taken.size()};
  }
  [[nodiscard]] std::string Rest() { return Bytes(rest_.size()); }
  /// Characters out of so many bytes: one each below 0x80, else of the two bytes that follow.
  [[nodiscard]] std::u16string Characters(std::size_t count) {
    Input bytes(rest_.first(std::min(count, rest_.size())));
    rest_ = rest_.subspan(bytes.rest_.size());
    std::u16string characters;
    while (!bytes.IsEmpty()) {
      const std::uint8_t first = bytes.Byte();
      characters += first < 0x80 ? char16_t{first} : static_cast<char16_t>(bytes.Number16());
    }
    return characters;
  }
  /// The same up to the rest's next line feed, which goes, or of all of it.
  [[nodiscard]] std::u16string Line() {
    const auto end = std::ranges::find(rest_, std::uint8_t{'\n'});
    std::u16string line = Characters(static_cast<std::size_t>(end - rest_.begin()));
    static_cast<void>(Bytes(1));
    return line;
  }

 private:
  std::span<const std::uint8_t> rest_;
};

/// What one program does with an input. Returns where every answer was right, else see Require().
struct Target {
  const char* name;
  void (*run)(Input input);
};

/// Those that the program is linked of.
[[nodiscard]] std::vector<Target>& Targets();

/// Adds a target at the program's start.
struct Registered {
  Registered(const char* name, void (*run)(Input)) { Targets().push_back({name, run}); }
};

/// Ends the program where the answer is wrong, with the words in front of it.
void Require(bool is_right, std::string_view what);

}  // namespace quorvane::fuzz
