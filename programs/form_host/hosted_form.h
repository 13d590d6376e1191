#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "programs/form_host/call_log.h"
#include "programs/form_host/form_bag.h"

// What the flow of the form host asks of a container. Answered once in windows/, by a real one that
// gets the control from the registered module, and once in posix/, over the stand-ins; the build
// list picks.
namespace quorvane::programs {

struct SizeInTwips {
  long width = 0;
  long height = 0;
};

/// A form with one control on it, at design time: the form is edited and saved.
///
/// Used on the thread that made it. Failures of the control and of the component model are raised
/// as run-time errors.
class HostedForm {
 public:
  HostedForm() = default;
  HostedForm(const HostedForm&) = delete;
  HostedForm& operator=(const HostedForm&) = delete;
  virtual ~HostedForm() = default;

  /// Lets the control load what the form has kept for it; exactly once, before all else.
  virtual void Load(FormBag& bag) = 0;
  /// Lets the control save what differs from the defaults.
  virtual void Save(FormBag& bag) = 0;
  /// Whether a property has changed since the last Load() or Save().
  [[nodiscard]] virtual bool NeedsSaving() = 0;

  /// The size on which control and container have agreed.
  [[nodiscard]] virtual SizeInTwips Size() = 0;
  /// Shows the form for a moment where there is a display. Gives a line that tells what was shown.
  [[nodiscard]] virtual std::string Show() = 0;
  /// Keeps what Show() has shown on the screen until Enter is pressed or standard input ends;
  /// returns at once where nothing is shown.
  virtual void StayUntilEnter() = 0;

  /// A member of the control by its name, "ServerPort". Put converts the value to the member's
  /// kind: type mismatch (13), overflow (6).
  [[nodiscard]] virtual TaggedValue Get(const Text& member) = 0;
  virtual void Put(const Text& member, const TaggedValue& value) = 0;
  [[nodiscard]] virtual std::int32_t GetCRCValue() = 0;
};

/// Told the name of each property that the control reports as changed.
using ChangeListener = std::function<void(const Text& property)>;

/// Makes an empty form and creates the control on it. The calls between the two are told in the
/// log, if one is given, which the container over the stand-ins does not take: see interactive.h.
[[nodiscard]] std::unique_ptr<HostedForm> MakeForm(ChangeListener listener, CallLog* log = nullptr);

/// Runs the body on a thread of its own, ready for controls, and waits for its end; what the body
/// throws is thrown on. The settings live once per thread, so a control on a fresh one starts
/// without a trace of what another has held.
void OnFreshThread(const std::function<void()>& body);

}  // namespace quorvane::programs
