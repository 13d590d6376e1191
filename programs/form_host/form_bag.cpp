#include "programs/form_host/form_bag.h"

#include <algorithm>

namespace quorvane::programs {

FormBag::FormBag(const std::vector<FormEntry>& entries) {
  for (const FormEntry& entry : entries) Put(entry.name, entry.value);
}

const TaggedValue* FormBag::Find(const Text& name) {
  asked_.insert(name.Characters());
  const auto found = std::ranges::find(entries_, name, &FormEntry::name);
  return found == entries_.end() ? nullptr : &found->value;
}

void FormBag::Put(const Text& name, const TaggedValue& value) {
  const auto found = std::ranges::find(entries_, name, &FormEntry::name);
  if (found == entries_.end()) {
    entries_.push_back({name, value});
  } else {
    found->value = value;
  }
}

std::vector<Text> FormBag::Unread() const {
  std::vector<Text> names;
  for (const FormEntry& entry : entries_)
    if (!asked_.contains(entry.name.Characters())) names.push_back(entry.name);
  return names;
}

}  // namespace quorvane::programs
