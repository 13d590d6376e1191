// Proves the road of GetCRCValue: the name it builds, the fresh objects of each call, and every
// error on the way.

#include <gtest/gtest.h>

#include "control/SecurityCtrl.h"
#include "control/basGlobals.h"
#include "tests/support/control_fakes.h"
#include "tests/support/fake_app.h"
#include "tests/support/fake_files.h"
#include "tests/support/fake_kernel32.h"
#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::CallLog;
using testing::ErrorNumberOf;
using testing::ErrorOf;
using testing::FakeApp;
using testing::FakeControlSite;
using testing::FakeFiles;
using testing::FaultPlan;

const std::vector<std::uint8_t> kDigits{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
constexpr std::int32_t kCrcOfDigits = -873187034;

struct Module {
  Module() = default;
  explicit Module(int failing_call, FaultPlan::Lasts lasts = FaultPlan::Lasts::kOnce)
      : plan(failing_call, lasts) {}

  CallLog log;
  FaultPlan plan;
  FakeApp app{log, plan};
  FakeFiles files{log, plan};
  CallLog site_log;
  FakeControlSite site{site_log};
  SecurityCtrl control{site, app, files};
};

TEST(GetCRCValue, IsTheCrcOfTheModulesFile) {
  Module module;
  module.files.contents[u"C:\\OCX\\Module.ocx"].bytes = kDigits;
  EXPECT_EQ(module.control.GetCRCValue(), kCrcOfDigits);
  EXPECT_EQ(module.files.OpenCount(), 0U);
  EXPECT_TRUE(module.site_log.empty());
}

TEST(GetCRCValue, GoesItsRoadInOrder) {
  Module module;
  module.files.contents[u"C:\\OCX\\Module.ocx"].bytes = kDigits;
  (void)module.control.GetCRCValue();
  EXPECT_EQ(module.log, (CallLog{"Path()", "EXEName()", "ListName(\"C:\\OCX\\Module.ocx\")",
                                 "FreeFileNumber()", "OpenForReading(\"C:\\OCX\\Module.ocx\", 1)",
                                 "Length(1)", "Read(1, 9)", "Close(1)"}));
}

TEST(GetCRCValue, AlwaysAddsBackslashAndOcx) {
  Module module;
  module.app.path = u"C:\\";
  module.app.name = u"Renamed.v2";
  module.files.contents[u"C:\\\\Renamed.v2.ocx"].bytes = kDigits;
  EXPECT_EQ(module.control.GetCRCValue(), kCrcOfDigits);
}

TEST(GetCRCValue, ReadsTheWholeFileAfreshAtEachCall) {
  Module module;
  auto& file = module.files.contents[u"C:\\OCX\\Module.ocx"];
  file.bytes = kDigits;
  EXPECT_EQ(module.control.GetCRCValue(), kCrcOfDigits);
  const CallLog first = module.log;
  module.log.clear();
  EXPECT_EQ(module.control.GetCRCValue(), kCrcOfDigits);
  EXPECT_EQ(module.log, first) << "nothing is cached";
  file.bytes.clear();
  EXPECT_EQ(module.control.GetCRCValue(), 0);
}

TEST(GetCRCValue, Raises53WithTheModulesNameWhenTheFileIsGone) {
  Module module;
  const auto error = ErrorOf([&] { (void)module.control.GetCRCValue(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 53);
  EXPECT_EQ(error->source, Text(u"Module.File"));
  EXPECT_EQ(error->description, Text(u"File not found"));
}

TEST(GetCRCValue, PassesThePlatformsErrorOfAFailingOpenOnUnchanged) {
  Module module;
  module.files.contents[u"C:\\OCX\\Module.ocx"].bytes = kDigits;
  module.files.open_failure[u"C:\\OCX\\Module.ocx"] = 70;
  const auto error = ErrorOf([&] { (void)module.control.GetCRCValue(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 70);
  EXPECT_EQ(error->source, Text(u"the platform"));
  EXPECT_EQ(error->description, Text(u"a failure of the platform"));
}

// A file of almost 4 GiB shows a negative length, which comes back as a count beyond 16 bits. (The
// overflow at 2 GiB takes as many bytes to reach; the stream's own tests have it.)
TEST(GetCRCValue, RaisesOverflowForAFileBeyondTheBlockLoop) {
  Module module;
  module.files.contents[u"C:\\OCX\\Module.ocx"].shown_length = -32769;
  EXPECT_EQ(ErrorNumberOf([&] { (void)module.control.GetCRCValue(); }), 6);
  EXPECT_EQ(module.files.OpenCount(), 0U);
}

TEST(GetCRCValue, LeavesNoFileOpenAndTheSettingsAloneWhicheverCallFails) {
  for (const auto lasts : {FaultPlan::Lasts::kOnce, FaultPlan::Lasts::kForGood}) {
    int n = 1;
    for (;; ++n) {
      Module module(n, lasts);
      module.files.contents[u"C:\\OCX\\Module.ocx"].bytes = kDigits;
      basGlobals::connectionSettings().ServerAddress = u"untouched";
      const std::int32_t number = ErrorNumberOf([&] { (void)module.control.GetCRCValue(); });
      EXPECT_EQ(module.files.OpenCount(), 0U) << n;
      EXPECT_EQ(basGlobals::connectionSettings().ServerAddress, Text(u"untouched"));
      if (!module.plan.HasStruck()) {
        EXPECT_EQ(number, 0);
        break;
      }
      // The first two are the module's own path and name, the others the files'; a listing that
      // fails is caught and raised again under its number. For good, the source text of that raise
      // asks for the module's name and fails, too.
      const bool asks_for_its_name = n <= 2 || (n == 3 && lasts == FaultPlan::Lasts::kForGood);
      EXPECT_EQ(number, asks_for_its_name ? 7 : 57) << n;
    }
    EXPECT_EQ(n, 8) << "seven calls can fail";
  }
}

}  // namespace
}  // namespace quorvane
