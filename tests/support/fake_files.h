#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/files.h"
#include "runtime/runtime_error.h"
#include "runtime/utf8.h"
#include "tests/support/call_log.h"
#include "tests/support/call_text.h"
#include "tests/support/fault_plan.h"

namespace quorvane::testing {

/// Files in memory. Writes every call down, and fails by the plan with the number `failure`; the
/// calls that ask the plan are all but Close, which never fails.
class FakeFiles final : public Files {
 public:
  struct File {
    std::vector<std::uint8_t> bytes;
    /// What Length() says, where that is not the count of the bytes. Reads behind the bytes succeed
    /// and give nothing.
    std::optional<std::int32_t> shown_length;
  };

  FakeFiles() = default;
  FakeFiles(CallLog& log, FaultPlan& plan) : log_(&log), plan_(&plan) {}

  std::map<std::u16string, File> contents;
  /// A failing call raises this number, with a source and a description of its own.
  std::int32_t failure = 57;
  /// Names that are listed as this entry, though there may be no such file.
  std::map<std::u16string, std::u16string> listed_as;
  /// Names whose opening raises this number.
  std::map<std::u16string, std::int32_t> open_failure;

  [[nodiscard]] std::size_t OpenCount() const { return open_.size(); }
  [[nodiscard]] bool IsOpen(std::int16_t number) const { return open_.contains(number); }

  Text ListName(const Text& name) override {
    Enter(CallText("ListName", ToUtf8(name)));
    if (const auto entry = listed_as.find(name.Characters()); entry != listed_as.end())
      return entry->second;
    return contents.contains(name.Characters()) ? name : Text(u"");
  }

  std::int16_t FreeFileNumber() override {
    Enter(CallText("FreeFileNumber"));
    std::int16_t number = 1;
    while (open_.contains(number)) ++number;
    return number;
  }

  void OpenForReading(const Text& name, std::int16_t number) override {
    Enter(CallText("OpenForReading", ToUtf8(name), number));
    if (const auto error = open_failure.find(name.Characters()); error != open_failure.end())
      RaiseAs(error->second);
    if (!contents.contains(name.Characters())) RaiseAs(53);
    open_[number] = {&contents[name.Characters()], 0};
  }

  std::int32_t Length(std::int16_t number) override {
    Enter(CallText("Length", number));
    const File& file = *OpenAt(number).file;
    return file.shown_length.value_or(static_cast<std::int32_t>(file.bytes.size()));
  }

  void Read(std::int16_t number, ByteArray& buffer) override {
    const auto target = buffer.Elements();
    Enter(CallText("Read", number, target.size()));
    OpenFile& open = OpenAt(number);
    const std::vector<std::uint8_t>& bytes = open.file->bytes;
    const std::size_t start = std::min(open.place, bytes.size());
    const std::size_t count = std::min(target.size(), bytes.size() - start);
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(start), count, target.begin());
    open.place += count;
  }

  void Close(std::int16_t number) override {
    Write(CallText("Close", number));
    open_.erase(number);
  }

  /// The error that a failing call raises.
  [[nodiscard]] static RuntimeError FailureOf(std::int32_t number) {
    return {number, u"the platform", u"a failure of the platform"};
  }

 private:
  struct OpenFile {
    const File* file = nullptr;
    std::size_t place = 0;
  };

  [[noreturn]] static void RaiseAs(std::int32_t number) { throw FailureOf(number); }

  void Write(std::string line) {
    if (log_ != nullptr) log_->push_back(std::move(line));
  }

  void Enter(std::string line) {
    Write(std::move(line));
    if (plan_ != nullptr && plan_->NextCallFails()) RaiseAs(failure);
  }

  OpenFile& OpenAt(std::int16_t number) {
    const auto found = open_.find(number);
    if (found == open_.end()) RaiseAs(52);
    return found->second;
  }

  CallLog* log_ = nullptr;
  FaultPlan* plan_ = nullptr;
  std::map<std::int16_t, OpenFile> open_;
};

}  // namespace quorvane::testing
