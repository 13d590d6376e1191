#pragma once

#include <string_view>

namespace quorvane {

/// When two texts count as the same for someone who reads them: the system locale's collation with
/// the case of letters left aside. Which characters equal each other, or equal nothing at all, is
/// the system's business.
class Collation {
 public:
  virtual ~Collation() = default;

  /// Whether the two texts are equal. They may differ in length: a text of characters that the
  /// collation passes over equals the empty one. Raises nothing but out of memory (7).
  [[nodiscard]] virtual bool AreEqual(std::u16string_view left,
                                      std::u16string_view right) const = 0;

  /// Whether texts made of U+0020 to U+007E alone are equal exactly when they are the same up to
  /// the case of A to Z, so that a caller may compare such texts itself. It is false where the
  /// locale takes several of these characters for one letter, or gives one of them another partner
  /// in case. Raises nothing but out of memory (7).
  [[nodiscard]] virtual bool FoldsAsciiPlainly() const = 0;
};

/// The system locale's collation.
[[nodiscard]] const Collation& systemCollation() noexcept;

}  // namespace quorvane
