#include "control/stream_bag.h"

#include <algorithm>
#include <array>
#include <utility>

#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 4> kMagic{'Q', 'S', 'P', 'B'};
constexpr std::uint32_t kLayoutVersion = 1;

constexpr std::uint16_t kInteger16Kind = 2;
constexpr std::uint16_t kTextKind = 8;
constexpr std::uint16_t kBooleanKind = 11;

// Reads from the front. Once a length leads beyond the end all that follows is nothing.
class Reader {
 public:
  explicit Reader(Bytes bytes) : rest_(bytes) {}

  std::optional<Bytes> Take(std::uint64_t size) {
    if (size > rest_.size()) return std::nullopt;
    const Bytes taken = rest_.first(static_cast<std::size_t>(size));
    rest_ = rest_.subspan(taken.size());
    return taken;
  }

  template <class Unsigned>
  std::optional<Unsigned> Number() {
    const std::optional<Bytes> bytes = Take(sizeof(Unsigned));
    if (!bytes) return std::nullopt;
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i)
      number |= static_cast<std::uint32_t>((*bytes)[i]) << (8 * i);
    return static_cast<Unsigned>(number);
  }

 private:
  Bytes rest_;
};

Text TextOf(Bytes bytes) {
  std::u16string characters(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < characters.size(); ++i)
    characters[i] = static_cast<char16_t>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
  return characters;
}

// Nothing when the length does not fit the kind; the empty kind for one that is not known.
std::optional<TaggedValue> ValueOf(std::uint16_t kind, Bytes data) {
  if (kind == kTextKind) {
    if (data.size() % 2 != 0) return std::nullopt;
    return TextOf(data);
  }
  if (kind != kInteger16Kind && kind != kBooleanKind) return TaggedValue();
  if (data.size() != 2) return std::nullopt;
  const auto bits = static_cast<std::int16_t>(data[0] | (data[1] << 8));
  return kind == kBooleanKind ? TaggedValue(Boolean16{bits}) : TaggedValue(bits);
}

void Append(std::vector<std::uint8_t>& bytes, std::uint32_t number, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i)
    bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

void AppendLength(std::vector<std::uint8_t>& bytes, std::size_t length) {
  Append(bytes, static_cast<std::uint32_t>(length), 4);
}

void AppendCharacters(std::vector<std::uint8_t>& bytes, const Text& text) {
  for (const char16_t character : text.Characters()) Append(bytes, character, 2);
}

void AppendValue(std::vector<std::uint8_t>& bytes, const TaggedValue& value) {
  if (const auto* text = value.As<Text>()) {
    Append(bytes, kTextKind, 2);
    AppendLength(bytes, text->Characters().size() * 2);
    AppendCharacters(bytes, *text);
    return;
  }
  const auto* boolean = value.As<Boolean16>();
  Append(bytes, boolean != nullptr ? kBooleanKind : kInteger16Kind, 2);
  AppendLength(bytes, 2);
  const std::int16_t bits = boolean != nullptr ? boolean->bits : *value.As<std::int16_t>();
  Append(bytes, static_cast<std::uint16_t>(bits), 2);
}

}  // namespace

std::optional<std::uint32_t> StreamBag::BodySize(std::span<const std::uint8_t, kHeadSize> head) {
  Reader reader(head);
  const std::optional<Bytes> magic = reader.Take(kMagic.size());
  if (!magic || !std::ranges::equal(*magic, kMagic)) return std::nullopt;
  if (reader.Number<std::uint32_t>() != kLayoutVersion) return std::nullopt;
  return reader.Number<std::uint32_t>();
}

std::optional<StreamBag> StreamBag::FromBody(std::span<const std::uint8_t> body) {
  Reader reader(body);
  StreamBag bag;
  const auto count = reader.Number<std::uint32_t>();
  if (!count) return std::nullopt;
  for (std::uint32_t i = 0; i < *count; ++i) {
    const auto name_length = reader.Number<std::uint32_t>();
    const auto name = reader.Take(std::uint64_t{name_length.value_or(0)} * 2);
    const auto kind = reader.Number<std::uint16_t>();
    const auto data_size = reader.Number<std::uint32_t>();
    const auto data = reader.Take(data_size.value_or(0));
    if (!name_length || !name || !kind || !data_size || !data) return std::nullopt;
    const std::optional<TaggedValue> value = ValueOf(*kind, *data);
    if (!value) return std::nullopt;
    if (!value->IsEmpty()) bag.entries_.push_back({TextOf(*name), *value});
  }
  return bag;
}

std::vector<std::uint8_t> StreamBag::ToBytes() const {
  std::vector<std::uint8_t> body;
  AppendLength(body, entries_.size());
  for (const Entry& entry : entries_) {
    AppendLength(body, entry.name.Characters().size());
    AppendCharacters(body, entry.name);
    AppendValue(body, entry.value);
  }
  std::vector<std::uint8_t> bytes(kMagic.begin(), kMagic.end());
  Append(bytes, kLayoutVersion, 4);
  AppendLength(bytes, body.size());
  bytes.insert(bytes.end(), body.begin(), body.end());
  return bytes;
}

TaggedValue StreamBag::ReadProperty(const Text& name, const TaggedValue& default_value) {
  const auto found = std::ranges::find(entries_, name, &Entry::name);
  return found != entries_.end() ? found->value : default_value;
}

void StreamBag::WriteProperty(const Text& name, const TaggedValue& value,
                              const TaggedValue& default_value) {
  if (!value.Is<Text>() && !value.Is<Boolean16>() && !value.Is<std::int16_t>())
    Raise(ErrorNumber::kTypeMismatch);
  if (!(value == default_value)) entries_.push_back({name, value});
}

}  // namespace quorvane
