// What the control's logic does when memory runs out at any point in it: events drop the error, and
// a member's error is the caller's.

#include <gtest/gtest.h>

#include <type_traits>

#include "control/SecurityCtrl.h"
#include "control/basGlobals.h"
#include "tests/support/failing_memory.h"
#include "tests/support/raises.h"

namespace quorvane::testing {
namespace {

class SilentSite final : public ControlSite {
 public:
  void PropertyChanged(const identities::Property& /*property*/) override {}
  void SetHeight(float /*twips*/) override {}
  void SetWidth(float /*twips*/) override {}
};

// Every entry is stored, as a text.
class FullBag final : public PropertyBag {
 public:
  TaggedValue ReadProperty(const Text& name, const TaggedValue& /*default_value*/) override {
    return name == Text(u"ServerPort") || name == Text(u"UseProxy")
               ? TaggedValue(Text(u"8080"))
               : TaggedValue(Text(u"a value of some length"));
  }
  void WriteProperty(const Text& /*name*/, const TaggedValue& /*value*/,
                     const TaggedValue& /*default_value*/) override {
    ++written;
  }

  int written = 0;
};

TEST(ExhaustedMemory, EndsAnEventAsASuccess) {
  SilentSite site;
  FullBag bag;
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    basGlobals::connectionSettings() = {};
    arm();
    {
      SecurityCtrl control(site);
      control.Initialize();
      control.InitProperties();
      control.ReadProperties(bag);
      control.Resize();
      control.WriteProperties(bag);
      control.Terminate();
    }
    const bool failed = disarm();
    const auto& settings = basGlobals::connectionSettings();
    if (!failed) {
      EXPECT_EQ(settings.Password, Text(u"a value of some length"));
    }
    // Whatever was read before the failure stays, in its order.
    if (settings.ServerAddress.IsEmpty()) {
      EXPECT_EQ(settings.ServerPort, 0);
    }
    if (settings.ServerPort == 0) {
      EXPECT_TRUE(settings.ServerFile.IsEmpty());
    }
    if (settings.ProxyServer.IsEmpty()) {
      EXPECT_TRUE(settings.UserName.IsEmpty());
    }
  });
  EXPECT_GE(failures, 10);
}

TEST(ExhaustedMemory, IsTheCallersFromEveryProperty) {
  SilentSite site;
  SecurityCtrl control(site);
  settings::ForEach([&](const auto& setting) {
    const auto value = [&] {
      if constexpr (std::is_same_v<decltype(control.Get(setting)), Text>)
        return Text(u"a value of some length");
      else
        return decltype(control.Get(setting)){1};
    }();
    FailEachAllocation([&](auto arm, auto disarm) {
      basGlobals::connectionSettings() = {};
      const auto before = control.Get(setting);
      arm();
      std::int32_t number = NumberRaised([&] { control.Put(setting, value); });
      bool failed = disarm();
      EXPECT_EQ(number, failed ? 7 : 0);
      EXPECT_EQ(control.Get(setting), number == 0 ? value : before);
      if (failed) return;
      auto got = before;
      arm();
      number = NumberRaised([&] { got = control.Get(setting); });
      failed = disarm();
      EXPECT_EQ(number, failed ? 7 : 0);
      EXPECT_EQ(got, number == 0 ? value : before);
    });
  });
}

TEST(ExhaustedMemory, IsTheCallersFromGetCRCValue) {
  SilentSite site;
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    arm();
    const std::int32_t number =
        NumberRaised([&] { static_cast<void>(SecurityCtrl(site).GetCRCValue()); });
    const bool failed = disarm();
    // Beside this program there is no module of its name.
    EXPECT_TRUE(number == 53 || (failed && number == 7)) << number;
    EXPECT_EQ(files().FreeFileNumber(), 1);
  });
  EXPECT_GE(failures, 4);
}

}  // namespace
}  // namespace quorvane::testing
