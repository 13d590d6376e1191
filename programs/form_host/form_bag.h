#pragma once

#include <set>
#include <vector>

#include "runtime/tagged_value.h"
#include "runtime/text.h"

namespace quorvane::programs {

/// One named value of a saved form.
struct FormEntry {
  Text name;
  TaggedValue value;

  friend bool operator==(const FormEntry&, const FormEntry&) = default;
};

/// The values that a form keeps for its control, in the order in which they were put. Names are
/// compared exactly, so "Username" and "UserName" are two.
///
/// The bag remembers which names it was asked for: a control that gives up in the middle of loading
/// says nothing, but leaves the rest unread.
class FormBag {
 public:
  FormBag() = default;
  explicit FormBag(const std::vector<FormEntry>& entries);

  /// The value of that name, or null. Valid until the next Put().
  [[nodiscard]] const TaggedValue* Find(const Text& name);
  /// Adds the value, or replaces the one that has the name.
  void Put(const Text& name, const TaggedValue& value);

  [[nodiscard]] const std::vector<FormEntry>& Entries() const { return entries_; }
  /// The names that nobody has asked for.
  [[nodiscard]] std::vector<Text> Unread() const;

 private:
  std::vector<FormEntry> entries_;
  std::set<std::u16string> asked_;
};

}  // namespace quorvane::programs
