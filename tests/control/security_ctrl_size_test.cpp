// Proves the size lock: height, then width, at 420 twips, whatever happens on the way.

#include <gtest/gtest.h>

#include <bit>

#include "control/SecurityCtrl.h"
#include "tests/support/control_fakes.h"

namespace quorvane {
namespace {

using testing::CallLog;
using testing::FakeControlSite;
using testing::FaultPlan;

TEST(SecurityCtrl, LocksHeightThenWidthAt420Twips) {
  CallLog log;
  FakeControlSite site(log);
  SecurityCtrl(site).Resize();
  EXPECT_EQ(log, (CallLog{"SetHeight(420.000000)", "SetWidth(420.000000)"}));
  EXPECT_EQ(std::bit_cast<std::uint32_t>(SecurityCtrl::kSizeInTwips), 0x43D20000U);
}

TEST(SecurityCtrl, LeavesTheWidthUnsetWhenTheHeightIsRefused) {
  CallLog log;
  FakeControlSite site(log, FaultPlan(1));
  SecurityCtrl(site).Resize();
  EXPECT_EQ(log, (CallLog{"SetHeight(420.000000)"}));
}

TEST(SecurityCtrl, DropsTheErrorOfARefusedWidth) {
  CallLog log;
  FakeControlSite site(log, FaultPlan(2));
  SecurityCtrl(site).Resize();
  EXPECT_EQ(log.size(), 2U);
}

// A container that raises Resize from inside each new size, a few levels deep.
class NestingSite final : public ControlSite {
 public:
  void PropertyChanged(const identities::Property&) override {}
  void SetHeight(float twips) override { Take(height, twips); }
  void SetWidth(float twips) override { Take(width, twips); }

  SecurityCtrl control{*this};
  float height = 0;
  float width = 0;
  int entries = 0;

 private:
  void Take(float& size, float twips) {
    if (++entries < 6) control.Resize();
    size = twips;
  }
};

TEST(SecurityCtrl, BearsResizeFromInsideResize) {
  NestingSite site;
  site.control.Resize();
  EXPECT_EQ(site.height, 420.0F);
  EXPECT_EQ(site.width, 420.0F);
  EXPECT_GE(site.entries, 6);
}

}  // namespace
}  // namespace quorvane
