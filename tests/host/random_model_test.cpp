// Proves that long random sequences of registry and profile operations, on the real calls and on
// the stand-ins, behave like a plain map. A failure names its seed and step.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "host/basAPI_api.h"
#include "runtime/utf8.h"
#include "tests/host/private_stores.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

using testing::kCurrentUser;

class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}
  std::size_t Below(std::size_t count) { return engine_() % count; }
  std::int32_t Integer() { return static_cast<std::int32_t>(engine_()); }
  template <class Item, std::size_t Count>
  const Item& OneOf(const Item (&items)[Count]) {
    return items[Below(Count)];
  }
  // Some letters in upper, some in lower case.
  std::u16string AnyCase(std::u16string name) {
    for (char16_t& c : name) {
      const bool letter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
      if (letter && Below(2) == 0) c = static_cast<char16_t>(c ^ 0x20);
    }
    return name;
  }
  std::u16string TextOf(std::u16string_view alphabet, std::size_t longest) {
    std::u16string text(Below(longest + 1), u' ');
    for (char16_t& c : text) c = alphabet[Below(alphabet.size())];
    return text;
  }

 private:
  std::mt19937 engine_;
};

// --- the registry

const std::u16string kPaths[] = {u"", u"\\a", u"\\a\\b", u"\\c d", u"\\\u00E9"};
const std::u16string kNames[] = {u"", u"name", u"other name", u"x\\y"};

class RegistryModel {
 public:
  void Write(const std::u16string& path, const std::u16string& name, const TaggedValue& value) {
    values_[{path, name}] = value;
  }
  [[nodiscard]] TaggedValue Read(const std::u16string& path, const std::u16string& name) const {
    const auto found = values_.find({path, name});
    return found == values_.end() ? TaggedValue() : found->second;
  }

 private:
  std::map<std::pair<std::u16string, std::u16string>, TaggedValue> values_;
};

void RunRegistrySteps(unsigned seed) {
  Dice dice(seed);
  RegistryModel model;
  const Text root = testing::FreshKeyPath();
  for (int step = 0; step < 250; ++step) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
    const std::u16string& path = dice.OneOf(kPaths);
    const std::u16string& name = dice.OneOf(kNames);
    Text key_path = root + Text(dice.AnyCase(path));
    Text value_name = Text(dice.AnyCase(name));
    const std::size_t action = dice.Below(5);
    if (action == 0) {
      TaggedValue value = Text(dice.TextOf(u"ab \u00E9\u20AC\\\"", 40));
      EXPECT_EQ(WriteRegistryValue(kCurrentUser, key_path, value_name, value, 1), kTrue);
      model.Write(path, name, value);
    } else if (action == 1) {
      TaggedValue value = dice.Integer();
      EXPECT_EQ(WriteRegistryValue(kCurrentUser, key_path, value_name, value, 4), kTrue);
      model.Write(path, name, value);
    } else if (action == 2) {
      TaggedValue value = Text(u"stores nothing");
      const auto type = static_cast<std::int32_t>(5 + dice.Below(20));
      EXPECT_EQ(WriteRegistryValue(kCurrentUser, key_path, value_name, value, type), kTrue);
    } else {
      EXPECT_EQ(ReadRegistryValue(kCurrentUser, key_path, value_name), model.Read(path, name));
    }
  }
}

TEST(RandomSequences, OfRegistryOperationsBehaveLikeAMap) {
  for (const unsigned seed : {1U, 2U, 3U, 4U}) RunRegistrySteps(seed);
}

// --- profiles

const std::u16string kSections[] = {u"one", u"section two", u"\u00E9"};
const std::u16string kKeys[] = {u"key", u"other key", u"k3"};

std::u16string AsRead(std::u16string_view value) {
  const std::size_t first = value.find_first_not_of(u" \t");
  if (first == std::u16string_view::npos) return {};
  value = value.substr(first, value.find_last_not_of(u" \t") - first + 1);
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == u'"' || value.front() == u'\'');
  if (quoted) value = value.substr(1, value.size() - 2);
  return std::u16string(value.substr(0, 255));
}

using SectionModel = std::map<std::u16string, std::u16string>;

void RunProfileSteps(unsigned seed) {
  Dice dice(seed);
  std::map<std::u16string, SectionModel> model;
  Text file = testing::FreshProfileName();
  for (int step = 0; step < 250; ++step) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
    const std::u16string& section = dice.OneOf(kSections);
    const std::u16string& key = dice.OneOf(kKeys);
    Text section_name = section == u"\u00E9" ? Text(section) : Text(dice.AnyCase(section));
    Text key_name = Text(dice.AnyCase(key));
    const std::size_t action = dice.Below(8);
    if (action < 3) {
      Text value = Text(dice.TextOf(u"ab =;[]'\"\u20AC", 280));
      model[section][key] = AsRead(value.Characters());
      EXPECT_EQ(WritePrivateProfileValue(section_name, key_name, value, file), kTrue);
    } else if (action == 3) {
      Text none;
      model[section].erase(key);
      EXPECT_EQ(WritePrivateProfileValue(section_name, key_name, none, file), kTrue);
    } else if (action == 4 && dice.Below(4) == 0) {
      Text none;
      model.erase(section);
      EXPECT_EQ(WritePrivateProfileValue(section_name, none, none, file), kTrue);
    } else {
      EXPECT_EQ(ReadPrivateProfileValue(section_name, key_name, file), Text(model[section][key]));
      if (model[section][key].empty()) model[section].erase(key);
    }
  }
}

TEST(RandomSequences, OfProfileOperationsBehaveLikeAMap) {
  for (const unsigned seed : {1U, 2U}) RunProfileSteps(seed);
}

}  // namespace
}  // namespace quorvane::basAPI_api
