// Proves the order in which the seven entries go to and come from the container's bag, and what a
// failure on the way leaves.

#include <gtest/gtest.h>

#include "control/SecurityCtrl.h"
#include "control/basGlobals.h"
#include "tests/support/control_fakes.h"
#include "tests/support/fresh_thread.h"
#include "tests/support/raises.h"

namespace quorvane {
namespace {

using basGlobals::connectionSettings;
using testing::CallLog;
using testing::FakeBag;
using testing::FakeControlSite;
using testing::FaultPlan;
using testing::OnFreshThread;

// A control on a fresh thread, with settings that all differ from their defaults where asked for.
template <class Body>
void WithControl(Body body) {
  OnFreshThread([&body] {
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl control(site);
    body(control);
    EXPECT_TRUE(log.empty()) << "loading and saving notify nobody";
  });
}

void FillSettings() {
  connectionSettings() = {u"old address", 7,           u"old file",    kTrue,
                          u"old proxy",   u"old user", u"old password"};
}

// The names of the settings that no longer hold what FillSettings() put in.
std::string ChangedSettings() {
  const auto& now = connectionSettings();
  std::string changed;
  if (!(now.ServerAddress == Text(u"old address"))) changed += "ServerAddress ";
  if (now.ServerPort != 7) changed += "ServerPort ";
  if (!(now.ServerFile == Text(u"old file"))) changed += "ServerFile ";
  if (now.UseProxy != kTrue) changed += "UseProxy ";
  if (!(now.ProxyServer == Text(u"old proxy"))) changed += "ProxyServer ";
  if (!(now.UserName == Text(u"old user"))) changed += "UserName ";
  if (!(now.Password == Text(u"old password"))) changed += "Password ";
  return changed;
}

TEST(SecurityCtrl, ReadsTheSevenEntriesInOrder) {
  WithControl([](SecurityCtrl& control) {
    FakeBag bag;
    bag.entries = {{"ServerAddress", Text(u"host")}, {"ServerPort", std::int16_t{81}},
                   {"ServerFile", Text(u"/form")},   {"UseProxy", kTrue},
                   {"ProxyServer", Text(u"proxy")},  {"Username", Text(u"user")},
                   {"Password", Text(u"secret")}};
    control.ReadProperties(bag);
    EXPECT_EQ(bag.log,
              (CallLog{"Read(ServerAddress)", "Read(ServerPort)", "Read(ServerFile)",
                       "Read(UseProxy)", "Read(ProxyServer)", "Read(Username)", "Read(Password)"}));
    EXPECT_EQ(control.Get(settings::kServerAddress), Text(u"host"));
    EXPECT_EQ(control.Get(settings::kServerPort), 81);
    EXPECT_EQ(control.Get(settings::kServerFile), Text(u"/form"));
    EXPECT_EQ(control.Get(settings::kUseProxy), kTrue);
    EXPECT_EQ(control.Get(settings::kProxyServer), Text(u"proxy"));
    EXPECT_EQ(control.Get(settings::kUserName), Text(u"user"));
    EXPECT_EQ(control.Get(settings::kPassword), Text(u"secret"));
  });
}

TEST(SecurityCtrl, TakesTheDefaultsForMissingEntriesOverWhatTheThreadHeld) {
  WithControl([](SecurityCtrl& control) {
    FillSettings();
    FakeBag bag;
    control.ReadProperties(bag);
    EXPECT_EQ(control.Get(settings::kServerAddress), Text(u""));
    EXPECT_EQ(control.Get(settings::kServerPort), 80);
    EXPECT_EQ(control.Get(settings::kServerFile), Text(u""));
    EXPECT_EQ(control.Get(settings::kUseProxy), kFalse);
    EXPECT_EQ(control.Get(settings::kProxyServer), Text(u""));
    EXPECT_EQ(control.Get(settings::kUserName), Text(u""));
    EXPECT_EQ(control.Get(settings::kPassword), Text(u""));
  });
}

TEST(SecurityCtrl, ConvertsEachEntryToTheTypeOfItsField) {
  WithControl([](SecurityCtrl& control) {
    FakeBag bag;
    bag.entries = {{"ServerAddress", std::int32_t{12}}, {"ServerPort", Text(u" 8080 ")},
                   {"UseProxy", std::int16_t{5}},       {"ProxyServer", kTrue},
                   {"Username", TaggedValue()},         {"Password", 1.5}};
    control.ReadProperties(bag);
    EXPECT_EQ(control.Get(settings::kServerAddress), Text(u"12"));
    EXPECT_EQ(control.Get(settings::kServerPort), 8080);
    EXPECT_EQ(control.Get(settings::kUseProxy), kTrue);
    EXPECT_EQ(control.Get(settings::kProxyServer), Text(u"True"));
    EXPECT_EQ(control.Get(settings::kUserName), Text(u""));
    EXPECT_EQ(control.Get(settings::kPassword), Text(u"1.5"));
  });
}

TEST(SecurityCtrl, SkipsTheRestOfALoadAtAnEntryThatCannotBeConverted) {
  for (const char16_t* port : {u"eighty", u"70000"}) {
    WithControl([port](SecurityCtrl& control) {
      FillSettings();
      FakeBag bag;
      bag.entries = {{"ServerAddress", Text(u"new")}, {"ServerPort", Text(port)}};
      control.ReadProperties(bag);
      EXPECT_EQ(ChangedSettings(), "ServerAddress ");
      EXPECT_EQ(control.Get(settings::kServerAddress), Text(u"new"));
      EXPECT_EQ(bag.log.size(), 2U);
    });
  }
}

TEST(SecurityCtrl, SkipsTheRestOfALoadAtABooleanThatCannotBeConverted) {
  WithControl([](SecurityCtrl& control) {
    FillSettings();
    FakeBag bag;
    bag.entries = {{"UseProxy", Text(u"perhaps")}};
    control.ReadProperties(bag);
    EXPECT_EQ(ChangedSettings(), "ServerAddress ServerPort ServerFile ");
  });
}

TEST(SecurityCtrl, StopsALoadAtTheFirstReadThatFails) {
  const std::vector<std::string> changed_after{
      "",
      "ServerAddress ",
      "ServerAddress ServerPort ",
      "ServerAddress ServerPort ServerFile ",
      "ServerAddress ServerPort ServerFile UseProxy ",
      "ServerAddress ServerPort ServerFile UseProxy ProxyServer ",
      "ServerAddress ServerPort ServerFile UseProxy ProxyServer UserName "};
  for (const auto lasts : {FaultPlan::Lasts::kOnce, FaultPlan::Lasts::kForGood}) {
    for (int n = 1; n <= 7; ++n) {
      WithControl([&](SecurityCtrl& control) {
        FillSettings();
        FakeBag bag{FaultPlan(n, lasts)};
        control.ReadProperties(bag);
        EXPECT_TRUE(bag.Plan().HasStruck());
        EXPECT_EQ(ChangedSettings(), changed_after[static_cast<std::size_t>(n - 1)]) << n;
        EXPECT_EQ(bag.log.size(), static_cast<std::size_t>(n)) << "nothing more is tried";
      });
    }
  }
  WithControl([](SecurityCtrl& control) {
    FakeBag bag{FaultPlan(8)};
    control.ReadProperties(bag);
    EXPECT_FALSE(bag.Plan().HasStruck());
  });
}

TEST(SecurityCtrl, WritesTheSevenEntriesInOrderWithTheirDefaults) {
  WithControl([](SecurityCtrl& control) {
    FillSettings();
    FakeBag bag;
    control.WriteProperties(bag);
    EXPECT_EQ(bag.log, (CallLog{"Write(ServerAddress, default )", "Write(ServerPort, default 80)",
                                "Write(ServerFile, default )", "Write(UseProxy, default False)",
                                "Write(ProxyServer, default )", "Write(Username, default )",
                                "Write(Password, default )"}));
  });
}

TEST(SecurityCtrl, WritesEachEntryInTheFieldsOwnType) {
  WithControl([](SecurityCtrl& control) {
    FillSettings();
    FakeBag bag;
    control.WriteProperties(bag);
    EXPECT_EQ(bag.entries.size(), 7U);
    EXPECT_EQ(bag.entries.at("ServerPort"), TaggedValue(std::int16_t{7}));
    EXPECT_EQ(bag.entries.at("UseProxy"), TaggedValue(kTrue));
    for (const char* name :
         {"ServerAddress", "ServerFile", "ProxyServer", "Username", "Password"}) {
      EXPECT_TRUE(bag.entries.at(name).Is<Text>()) << name;
    }
  });
}

TEST(SecurityCtrl, StoresPortZeroOfANewControlAndLoadsItAgain) {
  WithControl([](SecurityCtrl& control) {
    control.InitProperties();
    FakeBag bag;
    control.WriteProperties(bag);
    ASSERT_EQ(bag.entries.size(), 1U);
    EXPECT_EQ(bag.entries.at("ServerPort"), TaggedValue(std::int16_t{0}));
    connectionSettings().ServerPort = 5;
    control.ReadProperties(bag);
    EXPECT_EQ(control.Get(settings::kServerPort), 0);
  });
}

TEST(SecurityCtrl, LeavesDefaultsOutOfTheSavedForm) {
  WithControl([](SecurityCtrl& control) {
    connectionSettings().ServerPort = 80;
    FakeBag bag;
    control.WriteProperties(bag);
    EXPECT_TRUE(bag.entries.empty());
  });
}

TEST(SecurityCtrl, StoresANegativePort) {
  WithControl([](SecurityCtrl& control) {
    connectionSettings().ServerPort = -1;
    FakeBag bag;
    control.WriteProperties(bag);
    EXPECT_EQ(bag.entries.at("ServerPort"), TaggedValue(std::int16_t{-1}));
  });
}

TEST(SecurityCtrl, UseProxyKeepsItsBitsUntilItIsLoadedAgain) {
  WithControl([](SecurityCtrl& control) {
    connectionSettings().UseProxy = Boolean16{1};
    EXPECT_EQ(control.Get(settings::kUseProxy).bits, 1);
    FakeBag bag;
    control.WriteProperties(bag);
    control.ReadProperties(bag);
    EXPECT_EQ(control.Get(settings::kUseProxy).bits, -1);
  });
}

TEST(SecurityCtrl, PersistsUserNameAsUsername) {
  WithControl([](SecurityCtrl& control) {
    connectionSettings().UserName = u"user";
    FakeBag bag;
    control.WriteProperties(bag);
    EXPECT_TRUE(bag.entries.contains("Username"));
    EXPECT_FALSE(bag.entries.contains("UserName"));
  });
}

TEST(SecurityCtrl, PersistsThePasswordAsPlainText) {
  WithControl([](SecurityCtrl& control) {
    connectionSettings().Password = u"p\u00E4ss word";
    FakeBag bag;
    control.WriteProperties(bag);
    EXPECT_EQ(bag.entries.at("Password"), TaggedValue(Text(u"p\u00E4ss word")));
    EXPECT_EQ(control.Get(settings::kPassword), Text(u"p\u00E4ss word"));
  });
}

TEST(SecurityCtrl, LeavesTheLaterFieldsOutOfASaveThatFails) {
  for (const auto lasts : {FaultPlan::Lasts::kOnce, FaultPlan::Lasts::kForGood}) {
    for (int n = 1; n <= 7; ++n) {
      WithControl([&](SecurityCtrl& control) {
        FillSettings();
        FakeBag bag{FaultPlan(n, lasts)};
        control.WriteProperties(bag);
        EXPECT_TRUE(bag.Plan().HasStruck());
        EXPECT_EQ(bag.entries.size(), static_cast<std::size_t>(n - 1));
        EXPECT_EQ(bag.log.size(), static_cast<std::size_t>(n)) << "nothing more is tried";
        EXPECT_EQ(ChangedSettings(), "");
      });
    }
  }
}

TEST(SecurityCtrl, LoadOfASecondControlOverwritesTheFirstOnesSettings) {
  WithControl([](SecurityCtrl& first) {
    FillSettings();
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl second(site);
    FakeBag bag;
    bag.entries = {{"ServerAddress", Text(u"second")}};
    second.ReadProperties(bag);
    EXPECT_EQ(first.Get(settings::kServerAddress), Text(u"second"));
    EXPECT_EQ(first.Get(settings::kServerPort), 80);
    EXPECT_EQ(first.Get(settings::kPassword), Text(u""));
  });
}

TEST(SecurityCtrl, SavesWhatAnotherControlOfTheThreadWrote) {
  WithControl([](SecurityCtrl& first) {
    connectionSettings().ServerPort = 80;
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl second(site);
    second.Put(settings::kServerFile, u"/by the second");
    FakeBag bag;
    first.WriteProperties(bag);
    EXPECT_EQ(bag.entries.at("ServerFile"), TaggedValue(Text(u"/by the second")));
  });
}

}  // namespace
}  // namespace quorvane
