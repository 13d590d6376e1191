#pragma once

namespace quorvane::testing {

/// Decides which call on a fake fails: the n-th, counted from 1 over all the calls that ask; once,
/// or from then on for good. A plan of 0 lets every call pass.
///
/// The loop of a fault test raises n from 1 until a run meets no fault:
///   for (int n = 1;; ++n) { FaultPlan plan(n); ...run...; if (!plan.HasStruck()) break; }
class FaultPlan {
 public:
  enum class Lasts { kOnce, kForGood };

  explicit FaultPlan(int failing_call = 0, Lasts lasts = Lasts::kOnce)
      : failing_call_(failing_call), lasts_(lasts) {}

  /// To be asked by a fake at each call that can fail.
  bool NextCallFails() {
    ++calls_;
    const bool fails = failing_call_ > 0 && (calls_ == failing_call_ ||
                                             (calls_ > failing_call_ && lasts_ == Lasts::kForGood));
    has_struck_ = has_struck_ || fails;
    return fails;
  }

  [[nodiscard]] bool HasStruck() const { return has_struck_; }
  [[nodiscard]] int CallCount() const { return calls_; }

 private:
  int failing_call_;
  Lasts lasts_;
  int calls_ = 0;
  bool has_struck_ = false;
};

}  // namespace quorvane::testing
