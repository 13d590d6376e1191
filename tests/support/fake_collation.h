#pragma once

#include <new>
#include <string_view>

#include "platform/collation.h"
#include "tests/support/fault_plan.h"

namespace quorvane::testing {

/// A collation that folds A to Z and passes over U+00AD, so that a text may equal another of a
/// different length. It counts what it is asked, and fails as the plan says.
class FakeCollation final : public Collation {
 public:
  enum class Plain { kYes, kNo };
  static constexpr char16_t kPassedOver = 0x00AD;

  explicit FakeCollation(Plain plain = Plain::kYes, FaultPlan faults = FaultPlan())
      : plain_(plain), faults_(faults) {}

  bool AreEqual(std::u16string_view left, std::u16string_view right) const override {
    ++questions;
    if (faults_.NextCallFails()) throw std::bad_alloc();
    return SameWithoutPassedOver(left, right);
  }
  bool FoldsAsciiPlainly() const override { return plain_ == Plain::kYes; }

  mutable int questions = 0;

 private:
  // Without a copy of either: long texts are compared at every place.
  static bool SameWithoutPassedOver(std::u16string_view left, std::u16string_view right) {
    for (;;) {
      SkipPassedOver(left);
      SkipPassedOver(right);
      if (left.empty() || right.empty()) return left.empty() && right.empty();
      if (Fold(left.front()) != Fold(right.front())) return false;
      left.remove_prefix(1);
      right.remove_prefix(1);
    }
  }
  static void SkipPassedOver(std::u16string_view& text) {
    while (!text.empty() && text.front() == kPassedOver) text.remove_prefix(1);
  }
  static char16_t Fold(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
  }

  Plain plain_;
  mutable FaultPlan faults_;
};

/// Passes on what another collation says, except that a caller must ask it about plain ASCII too.
class NotPlain final : public Collation {
 public:
  explicit NotPlain(const Collation& original) : original_(original) {}
  bool AreEqual(std::u16string_view left, std::u16string_view right) const override {
    return original_.AreEqual(left, right);
  }
  bool FoldsAsciiPlainly() const override { return false; }

 private:
  const Collation& original_;
};

}  // namespace quorvane::testing
