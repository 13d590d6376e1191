// A form saved as a stream: StreamBag, and the control's own loading and saving over it.
//
// Oracle: a second reader, which works with places in the whole stream; what a bag writes reads
// back as the same bytes; and a control that has loaded a bag and saved it again loads the same
// settings from what it saved. Each setting comes through the conversions, the first that fails
// ends the loading.

#include <optional>

#include "control/stream_bag.h"
#include "fuzz/loaded_settings.h"
#include "fuzz/target.h"

namespace quorvane::fuzz::stream_bag {

using Stream = std::span<const std::uint8_t>;

struct StoredEntry {
  std::u16string name;
  TaggedValue value;
};

std::optional<std::uint32_t> NumberAt(Stream stream, std::size_t place, int size) {
  if (place > stream.size() || stream.size() - place < static_cast<std::size_t>(size)) return {};
  std::uint32_t number = 0;
  for (int i = size - 1; i >= 0; --i)
    number = number * 256 + stream[place + static_cast<std::size_t>(i)];
  return number;
}

std::optional<std::u16string> CharactersAt(Stream stream, std::size_t place, std::size_t bytes) {
  std::u16string characters;
  for (std::size_t i = 0; i + 1 < bytes; i += 2) {
    const auto character = NumberAt(stream, place + i, 2);
    if (!character) return std::nullopt;
    characters += static_cast<char16_t>(*character);
  }
  return characters;
}

// The entries that count; nothing for a damaged body.
std::optional<std::vector<StoredEntry>> EntriesOf(Stream body) {
  std::vector<StoredEntry> entries;
  const auto count = NumberAt(body, 0, 4);
  std::size_t place = 4;
  for (std::uint32_t i = 0; count && i < *count; ++i) {
    const auto length = NumberAt(body, place, 4);
    if (!length || *length > body.size()) return std::nullopt;
    const auto name = CharactersAt(body, place + 4, *length * 2);
    place += 4 + *length * 2;
    const auto kind = NumberAt(body, place, 2);
    const auto size = NumberAt(body, place + 2, 4);
    place += 6;
    if (!name || !kind || !size || place > body.size() || *size > body.size() - place) return {};
    const auto bits = static_cast<std::int16_t>(NumberAt(body, place, 2).value_or(0));
    const bool is_integer = *kind == 2 || *kind == 11;
    if ((is_integer && *size != 2) || (*kind == 8 && *size % 2 != 0)) return std::nullopt;
    if (*kind == 2) entries.push_back({*name, bits});
    if (*kind == 11) entries.push_back({*name, Boolean16{bits}});
    if (*kind == 8) entries.push_back({*name, Text(*CharactersAt(body, place, *size))});
    place += *size;
  }
  return count ? std::optional(entries) : std::nullopt;
}

TaggedValue FirstOf(const std::vector<StoredEntry>& entries, const std::u16string& name,
                    const TaggedValue& missing) {
  for (const StoredEntry& entry : entries)
    if (entry.name == name) return entry.value;
  return missing;
}

void CheckBag(StreamBag& bag, const std::vector<StoredEntry>& entries) {
  for (const StoredEntry& entry : entries)
    Require(bag.ReadProperty(entry.name, {}) == FirstOf(entries, entry.name, {}), "an entry");
  const std::vector<std::uint8_t> written = bag.ToBytes();
  const auto again = EntriesOf(Stream(written).subspan(StreamBag::kHeadSize));
  Require(again && again->size() == entries.size(), "the bytes have other entries");
  Require(StreamBag::BodySize(Stream(written).first<StreamBag::kHeadSize>()) ==
              written.size() - StreamBag::kHeadSize,
          "the head tells another size");
  auto copy = StreamBag::FromBody(Stream(written).subspan(StreamBag::kHeadSize));
  Require(copy && copy->ToBytes() == written, "the bytes change on their way");

  SilentSite site;
  SecurityCtrl control(site);
  const ConnectionSettings loaded = LoadInto(control, bag);
  const auto stored = [&](const std::u16string& name, const TaggedValue& missing) {
    return FirstOf(entries, name, missing);
  };
  Require(Same(loaded, LoadedFrom(stored)), "the control loads other settings");
  StreamBag saved;
  control.WriteProperties(saved);
  // A port that could not be loaded is 0, which the default of a saved form is not.
  Require(Same(LoadInto(control, saved), loaded), "what is saved loads as others");
}

void CheckHead(Stream stream) {
  const auto head = stream.first<StreamBag::kHeadSize>();
  const bool is_ours = NumberAt(stream, 0, 4) == 0x42505351U && NumberAt(stream, 4, 4) == 1U;
  Require(StreamBag::BodySize(head) == (is_ours ? NumberAt(stream, 8, 4) : std::nullopt),
          "BodySize()");
}

void Run(Input input) {
  const std::string bytes = input.Rest();
  const Stream stream(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  if (stream.size() < StreamBag::kHeadSize) return;
  CheckHead(stream);
  const Stream body = stream.subspan(StreamBag::kHeadSize);
  const auto entries = EntriesOf(body);
  auto bag = StreamBag::FromBody(body);
  Require(bag.has_value() == entries.has_value(), "whether the body is whole");
  if (bag) CheckBag(*bag, *entries);
}

const Registered kTarget("stream_bag", Run);

}  // namespace quorvane::fuzz::stream_bag
