#pragma once

#include <optional>
#include <string>

#include "programs/form_host/hosted_form.h"
#include "programs/form_host/windows/form_window.h"
#include "programs/form_host/windows/help_viewer.h"
#include "programs/form_host/windows/late_bound.h"
#include "programs/form_host/windows/property_sink.h"
#include "programs/form_host/windows/site.h"
#include "programs/form_host/windows/watch/boundary.h"

namespace quorvane::programs {

/// The form in a real container: the control comes from the module that is registered for its
/// class. Beside what every form can do, the steps of its life one by one, for those who look on.
class ContainerForm final : public HostedForm {
 public:
  /// The form stands in a window of its own, or as a child in that of its owner. With a log each
  /// call between container and control is told there.
  explicit ContainerForm(ChangeListener listener, CallLog* log = nullptr, HWND owner = nullptr);
  ContainerForm(const ContainerForm&) = delete;
  ContainerForm& operator=(const ContainerForm&) = delete;
  ~ContainerForm() override;

  void Load(FormBag& bag) override;
  void Save(FormBag& bag) override;
  [[nodiscard]] bool NeedsSaving() override;
  [[nodiscard]] SizeInTwips Size() override;
  [[nodiscard]] std::string Show() override;
  void StayUntilEnter() override;
  [[nodiscard]] TaggedValue Get(const Text& member) override { return members_.Get(member); }
  void Put(const Text& member, const TaggedValue& value) override;
  [[nodiscard]] std::int32_t GetCRCValue() override;

  /// Starts a new form, in the place of Load().
  void InitNew();
  /// Shows the control in its place, and hides it again. Each may come in any order.
  void Activate();
  void Deactivate();
  /// Asks the control for another size, and for that of its window, if it is active; what comes of
  /// it is the control's affair.
  void Resize(const SIZE& pixels);
  /// Opens the help file at the page of that help context, 0 for the first page.
  void ShowHelp(DWORD context);
  /// The help context that the type library gives a member, 0 for none.
  [[nodiscard]] DWORD HelpContextOf(const Text& member);

  [[nodiscard]] FormWindow& Window() { return window_; }
  /// Whether the active control takes the key for itself.
  [[nodiscard]] bool Translate(MSG& message) { return site_->ActiveObjectTakes(message); }

 private:
  [[nodiscard]] ComPtr<IOleObject> PassBorder(const ComPtr<IOleObject>& control, CallLog* log);
  [[nodiscard]] ComPtr<IPersistPropertyBag> Persistence() const;
  void ListenToChanges();
  void ShowHelpOrFailure();
  [[nodiscard]] SIZEL Extent() const;
  /// Null while the control is not active.
  [[nodiscard]] HWND ControlWindow() const;
  [[nodiscard]] std::string DescribeControlWindow() const;

  ChangeListener listener_;
  FormWindow window_;
  HelpViewer help_;
  ComPtr<Site> site_;
  ComPtr<PropertySink> sink_;
  std::wstring folder_;               // of the control's module
  std::optional<Boundary> boundary_;  // with a log only
  ComPtr<IOleObject> control_;
  LateBound members_;
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace quorvane::programs
