// A container's property bag: values of any kind under the names that the control asks for, and
// bags that fail at any call.
//
// Oracle: the settings worked out one after the other, see fuzz/loaded_settings.h; the calls that a
// bag gets, counted; and that what a control saves loads as it was.

#include <map>
#include <optional>

#include "fuzz/loaded_settings.h"
#include "fuzz/target.h"

namespace quorvane::fuzz::property_bag {

constexpr const char16_t* kNames[] = {u"ServerAddress", u"ServerPort", u"ServerFile", u"UseProxy",
                                      u"ProxyServer",   u"Username",   u"Password"};

// Fails at its n-th call, counted from 1; 0 for never.
class ScriptedBag final : public PropertyBag {
 public:
  TaggedValue ReadProperty(const Text& name, const TaggedValue& missing) override {
    Count(name);
    return Find(name.Characters(), missing);
  }
  void WriteProperty(const Text& name, const TaggedValue& value,
                     const TaggedValue& default_value) override {
    Count(name);
    if (!(value == default_value)) values[name.Characters()] = value;
  }
  [[nodiscard]] TaggedValue Find(const std::u16string& name, const TaggedValue& missing) const {
    const auto found = values.find(name);
    return found == values.end() ? missing : found->second;
  }

  std::map<std::u16string, TaggedValue> values;
  int fails_at = 0;
  int calls = 0;

 private:
  void Count(const Text& name) {
    Require(calls < 7 && name.Characters() == kNames[calls], "the order of the names");
    if (++calls == fails_at) Raise(ErrorNumber::kInternalError);
  }
};

TaggedValue ValueFrom(Input& input) {
  constexpr const char16_t* kTexts[] = {u"True", u"False", u"80", u"-1", u"1e3", u"70000", u"no"};
  switch (input.Byte(6)) {
    case 0:
      return Text(input.Characters(input.Byte(15)));
    case 1:
      return static_cast<std::int16_t>(input.Number16());
    case 2:
      return input.Number32();
    case 3:
      return Boolean16{static_cast<std::int16_t>(input.Number16())};
    case 4:
      return input.Number32() / 1000.0;
    case 5:
      return Text(kTexts[input.Byte(6)]);
    default:
      return {};
  }
}

void Run(Input input) {
  ScriptedBag bag;
  bag.fails_at = input.Byte(15);
  while (!input.IsEmpty()) {
    const char16_t* const name = kNames[input.Byte(6)];
    bag.values[name] = ValueFrom(input);
  }
  SilentSite site;
  SecurityCtrl control(site);
  const ConnectionSettings loaded = LoadInto(control, bag);
  int asked = 0;
  const ConnectionSettings expected =
      LoadedFrom([&](const std::u16string& name, const TaggedValue& missing) {
        if (++asked == bag.fails_at) Raise(ErrorNumber::kInternalError);
        return bag.Find(name, missing);
      });
  Require(Same(loaded, expected) && bag.calls == asked, "the control loads other settings");

  ScriptedBag saved;
  control.WriteProperties(saved);
  Require(saved.calls == 7, "not all is saved");
  saved.calls = 0;
  ConnectionSettings kept = loaded;
  // The bits of a Boolean are kept until it is loaded again.
  kept.UseProxy = ToBoolean16(kept.UseProxy.IsTrue());
  Require(Same(LoadInto(control, saved), kept), "what is saved loads as others");

  ScriptedBag failing;
  failing.fails_at = bag.fails_at;
  control.WriteProperties(failing);
  Require(failing.calls == (failing.fails_at > 0 && failing.fails_at < 7 ? failing.fails_at : 7),
          "a failing bag is asked again");
}

const Registered kTarget("property_bag", Run);

}  // namespace quorvane::fuzz::property_bag
