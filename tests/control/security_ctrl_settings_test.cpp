// Proves the seven settings as the members of the interface see them: shared by all controls of a
// thread, unseen by other threads, stored before the container is told.

#include <gtest/gtest.h>

#include "control/SecurityCtrl.h"
#include "control/basGlobals.h"
#include "tests/support/control_fakes.h"
#include "tests/support/fresh_thread.h"
#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::CallLog;
using testing::ErrorNumberOf;
using testing::FaultPlan;
using testing::kPlannedFault;
using testing::OnFreshThread;
using testing::RecordingSite;

TEST(SecurityCtrl, StartsAThreadWithPortZeroAndEmptyTexts) {
  OnFreshThread([] {
    CallLog log;
    RecordingSite site(log);
    SecurityCtrl control(site);
    control.Initialize();
    control.InitProperties();
    EXPECT_EQ(control.ServerPort(), 0);
    EXPECT_EQ(control.ServerAddress(), Text(u""));
    EXPECT_EQ(control.ServerFile(), Text(u""));
    EXPECT_EQ(control.UseProxy(), kFalse);
    EXPECT_EQ(control.ProxyServer(), Text(u""));
    EXPECT_EQ(control.UserName(), Text(u""));
    EXPECT_EQ(control.Password(), Text(u""));
    EXPECT_TRUE(log.empty());
  });
}

TEST(SecurityCtrl, NotifiesWithThePersistedNameAtEachPut) {
  OnFreshThread([] {
    CallLog log;
    RecordingSite site(log);
    SecurityCtrl control(site);
    control.PutServerAddress(u"host");
    control.PutServerPort(8080);
    control.PutServerFile(u"/form");
    control.PutUseProxy(kTrue);
    control.PutProxyServer(u"proxy:3128");
    control.PutUserName(u"user");
    control.PutPassword(u"secret");
    EXPECT_EQ(log, (CallLog{"PropertyChanged(ServerAddress)", "PropertyChanged(ServerPort)",
                            "PropertyChanged(ServerFile)", "PropertyChanged(UseProxy)",
                            "PropertyChanged(ProxyServer)", "PropertyChanged(Username)",
                            "PropertyChanged(Password)"}));
    EXPECT_EQ(control.ServerAddress(), Text(u"host"));
    EXPECT_EQ(control.ServerPort(), 8080);
    EXPECT_EQ(control.ServerFile(), Text(u"/form"));
    EXPECT_EQ(control.UseProxy(), kTrue);
    EXPECT_EQ(control.ProxyServer(), Text(u"proxy:3128"));
    EXPECT_EQ(control.UserName(), Text(u"user"));
    EXPECT_EQ(control.Password(), Text(u"secret"));
  });
}

TEST(SecurityCtrl, StoresTheValueBeforeTheNotificationAndKeepsItWhenThatFails) {
  const auto put_fails_but_stores = [](auto put, auto stored) {
    OnFreshThread([&] {
      CallLog log;
      RecordingSite site(log, FaultPlan(1));
      SecurityCtrl control(site);
      EXPECT_EQ(ErrorNumberOf([&] { put(control); }), kPlannedFault);
      EXPECT_TRUE(stored(control));
    });
  };
  put_fails_but_stores([](auto& c) { c.PutServerAddress(u"a"); },
                       [](auto& c) { return c.ServerAddress() == Text(u"a"); });
  put_fails_but_stores([](auto& c) { c.PutServerPort(1); },
                       [](auto& c) { return c.ServerPort() == 1; });
  put_fails_but_stores([](auto& c) { c.PutServerFile(u"b"); },
                       [](auto& c) { return c.ServerFile() == Text(u"b"); });
  put_fails_but_stores([](auto& c) { c.PutUseProxy(kTrue); },
                       [](auto& c) { return c.UseProxy() == kTrue; });
  put_fails_but_stores([](auto& c) { c.PutProxyServer(u"c"); },
                       [](auto& c) { return c.ProxyServer() == Text(u"c"); });
  put_fails_but_stores([](auto& c) { c.PutUserName(u"d"); },
                       [](auto& c) { return c.UserName() == Text(u"d"); });
  put_fails_but_stores([](auto& c) { c.PutPassword(u"e"); },
                       [](auto& c) { return c.Password() == Text(u"e"); });
}

TEST(SecurityCtrl, AcceptsEvery16BitPort) {
  OnFreshThread([] {
    CallLog log;
    RecordingSite site(log);
    SecurityCtrl control(site);
    for (const std::int16_t port :
         std::initializer_list<std::int16_t>{-32768, -1, 0, 1, 80, 32767}) {
      control.PutServerPort(port);
      EXPECT_EQ(control.ServerPort(), port);
    }
  });
}

TEST(SecurityCtrl, SharesTheSettingsAmongControlsOfAThread) {
  OnFreshThread([] {
    CallLog log;
    RecordingSite site(log);
    SecurityCtrl first(site);
    SecurityCtrl second(site);
    first.PutServerAddress(u"shared");
    EXPECT_EQ(second.ServerAddress(), Text(u"shared"));
    second.PutServerAddress(u"last writer");
    EXPECT_EQ(first.ServerAddress(), Text(u"last writer"));
  });
}

TEST(SecurityCtrl, HidesTheSettingsFromOtherThreads) {
  OnFreshThread([] {
    CallLog log;
    RecordingSite site(log);
    SecurityCtrl control(site);
    control.PutPassword(u"mine");
    OnFreshThread([] {
      EXPECT_EQ(basGlobals::connectionSettings().Password, Text(u""));
      basGlobals::connectionSettings().Password = u"theirs";
    });
    EXPECT_EQ(control.Password(), Text(u"mine"));
  });
}

TEST(SecurityCtrl, HandsOutCopiesOfItsTexts) {
  OnFreshThread([] {
    CallLog log;
    RecordingSite site(log);
    SecurityCtrl control(site);
    control.PutServerFile(u"before");
    const Text copy = control.ServerFile();
    control.PutServerFile(u"after");
    EXPECT_EQ(copy, Text(u"before"));
  });
}

TEST(SecurityCtrl, InitPropertiesLeavesTheServerSettingsAlone) {
  OnFreshThread([] {
    CallLog log;
    RecordingSite site(log);
    SecurityCtrl first(site);
    first.PutServerAddress(u"host");
    first.PutServerPort(81);
    first.PutServerFile(u"/form");
    first.PutUseProxy(kTrue);
    first.PutProxyServer(u"proxy");
    first.PutUserName(u"user");
    first.PutPassword(u"secret");
    SecurityCtrl second(site);
    second.InitProperties();
    EXPECT_EQ(first.ServerAddress(), Text(u"host"));
    EXPECT_EQ(first.ServerPort(), 81);
    EXPECT_EQ(first.ServerFile(), Text(u"/form"));
    EXPECT_EQ(first.UseProxy(), kFalse);
    EXPECT_EQ(first.ProxyServer(), Text(u""));
    EXPECT_EQ(first.UserName(), Text(u""));
    EXPECT_EQ(first.Password(), Text(u""));
  });
}

TEST(SecurityCtrl, TerminateLeavesTheSettings) {
  OnFreshThread([] {
    CallLog log;
    RecordingSite site(log);
    {
      SecurityCtrl control(site);
      control.PutServerPort(99);
      control.Terminate();
    }
    SecurityCtrl later(site);
    EXPECT_EQ(later.ServerPort(), 99);
  });
}

TEST(InternetFailed, IsFalseAtTheStartOfAThreadAndOncePerThread) {
  OnFreshThread([] {
    EXPECT_EQ(basGlobals::internetFailed(), kFalse);
    basGlobals::internetFailed() = kTrue;
    OnFreshThread([] { EXPECT_EQ(basGlobals::internetFailed(), kFalse); });
    EXPECT_EQ(basGlobals::internetFailed(), kTrue);
  });
}

}  // namespace
}  // namespace quorvane
