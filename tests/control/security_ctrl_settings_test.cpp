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
using testing::FakeControlSite;
using testing::FaultPlan;
using testing::kPlannedFault;
using testing::OnFreshThread;

TEST(SecurityCtrl, StartsAThreadWithPortZeroAndEmptyTexts) {
  OnFreshThread([] {
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl control(site);
    control.Initialize();
    control.InitProperties();
    EXPECT_EQ(control.Get(settings::kServerPort), 0);
    EXPECT_EQ(control.Get(settings::kServerAddress), Text(u""));
    EXPECT_EQ(control.Get(settings::kServerFile), Text(u""));
    EXPECT_EQ(control.Get(settings::kUseProxy), kFalse);
    EXPECT_EQ(control.Get(settings::kProxyServer), Text(u""));
    EXPECT_EQ(control.Get(settings::kUserName), Text(u""));
    EXPECT_EQ(control.Get(settings::kPassword), Text(u""));
    EXPECT_TRUE(log.empty());
  });
}

TEST(SecurityCtrl, NotifiesWithThePersistedNameAtEachPut) {
  OnFreshThread([] {
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl control(site);
    control.Put(settings::kServerAddress, u"host");
    control.Put(settings::kServerPort, 8080);
    control.Put(settings::kServerFile, u"/form");
    control.Put(settings::kUseProxy, kTrue);
    control.Put(settings::kProxyServer, u"proxy:3128");
    control.Put(settings::kUserName, u"user");
    control.Put(settings::kPassword, u"secret");
    EXPECT_EQ(log, (CallLog{"PropertyChanged(ServerAddress)", "PropertyChanged(ServerPort)",
                            "PropertyChanged(ServerFile)", "PropertyChanged(UseProxy)",
                            "PropertyChanged(ProxyServer)", "PropertyChanged(Username)",
                            "PropertyChanged(Password)"}));
    EXPECT_EQ(control.Get(settings::kServerAddress), Text(u"host"));
    EXPECT_EQ(control.Get(settings::kServerPort), 8080);
    EXPECT_EQ(control.Get(settings::kServerFile), Text(u"/form"));
    EXPECT_EQ(control.Get(settings::kUseProxy), kTrue);
    EXPECT_EQ(control.Get(settings::kProxyServer), Text(u"proxy:3128"));
    EXPECT_EQ(control.Get(settings::kUserName), Text(u"user"));
    EXPECT_EQ(control.Get(settings::kPassword), Text(u"secret"));
  });
}

TEST(SecurityCtrl, StoresTheValueBeforeTheNotificationAndKeepsItWhenThatFails) {
  const auto put_fails_but_stores = [](auto put, auto stored) {
    OnFreshThread([&] {
      CallLog log;
      FakeControlSite site(log, FaultPlan(1));
      SecurityCtrl control(site);
      EXPECT_EQ(ErrorNumberOf([&] { put(control); }), kPlannedFault);
      EXPECT_TRUE(stored(control));
    });
  };
  put_fails_but_stores([](auto& c) { c.Put(settings::kServerAddress, u"a"); },
                       [](auto& c) { return c.Get(settings::kServerAddress) == Text(u"a"); });
  put_fails_but_stores([](auto& c) { c.Put(settings::kServerPort, 1); },
                       [](auto& c) { return c.Get(settings::kServerPort) == 1; });
  put_fails_but_stores([](auto& c) { c.Put(settings::kServerFile, u"b"); },
                       [](auto& c) { return c.Get(settings::kServerFile) == Text(u"b"); });
  put_fails_but_stores([](auto& c) { c.Put(settings::kUseProxy, kTrue); },
                       [](auto& c) { return c.Get(settings::kUseProxy) == kTrue; });
  put_fails_but_stores([](auto& c) { c.Put(settings::kProxyServer, u"c"); },
                       [](auto& c) { return c.Get(settings::kProxyServer) == Text(u"c"); });
  put_fails_but_stores([](auto& c) { c.Put(settings::kUserName, u"d"); },
                       [](auto& c) { return c.Get(settings::kUserName) == Text(u"d"); });
  put_fails_but_stores([](auto& c) { c.Put(settings::kPassword, u"e"); },
                       [](auto& c) { return c.Get(settings::kPassword) == Text(u"e"); });
}

TEST(SecurityCtrl, AcceptsEvery16BitPort) {
  OnFreshThread([] {
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl control(site);
    for (const std::int16_t port :
         std::initializer_list<std::int16_t>{-32768, -1, 0, 1, 80, 32767}) {
      control.Put(settings::kServerPort, port);
      EXPECT_EQ(control.Get(settings::kServerPort), port);
    }
  });
}

TEST(SecurityCtrl, SharesTheSettingsAmongControlsOfAThread) {
  OnFreshThread([] {
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl first(site);
    SecurityCtrl second(site);
    first.Put(settings::kServerAddress, u"shared");
    EXPECT_EQ(second.Get(settings::kServerAddress), Text(u"shared"));
    second.Put(settings::kServerAddress, u"last writer");
    EXPECT_EQ(first.Get(settings::kServerAddress), Text(u"last writer"));
  });
}

TEST(SecurityCtrl, HidesTheSettingsFromOtherThreads) {
  OnFreshThread([] {
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl control(site);
    control.Put(settings::kPassword, u"mine");
    OnFreshThread([] {
      EXPECT_EQ(basGlobals::connectionSettings().Password, Text(u""));
      basGlobals::connectionSettings().Password = u"theirs";
    });
    EXPECT_EQ(control.Get(settings::kPassword), Text(u"mine"));
  });
}

TEST(SecurityCtrl, HandsOutCopiesOfItsTexts) {
  OnFreshThread([] {
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl control(site);
    control.Put(settings::kServerFile, u"before");
    const Text copy = control.Get(settings::kServerFile);
    control.Put(settings::kServerFile, u"after");
    EXPECT_EQ(copy, Text(u"before"));
  });
}

TEST(SecurityCtrl, InitPropertiesLeavesTheServerSettingsAlone) {
  OnFreshThread([] {
    CallLog log;
    FakeControlSite site(log);
    SecurityCtrl first(site);
    first.Put(settings::kServerAddress, u"host");
    first.Put(settings::kServerPort, 81);
    first.Put(settings::kServerFile, u"/form");
    first.Put(settings::kUseProxy, kTrue);
    first.Put(settings::kProxyServer, u"proxy");
    first.Put(settings::kUserName, u"user");
    first.Put(settings::kPassword, u"secret");
    SecurityCtrl second(site);
    second.InitProperties();
    EXPECT_EQ(first.Get(settings::kServerAddress), Text(u"host"));
    EXPECT_EQ(first.Get(settings::kServerPort), 81);
    EXPECT_EQ(first.Get(settings::kServerFile), Text(u"/form"));
    EXPECT_EQ(first.Get(settings::kUseProxy), kFalse);
    EXPECT_EQ(first.Get(settings::kProxyServer), Text(u""));
    EXPECT_EQ(first.Get(settings::kUserName), Text(u""));
    EXPECT_EQ(first.Get(settings::kPassword), Text(u""));
  });
}

TEST(SecurityCtrl, TerminateLeavesTheSettings) {
  OnFreshThread([] {
    CallLog log;
    FakeControlSite site(log);
    {
      SecurityCtrl control(site);
      control.Put(settings::kServerPort, 99);
      control.Terminate();
    }
    SecurityCtrl later(site);
    EXPECT_EQ(later.Get(settings::kServerPort), 99);
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
