// The form over the stand-ins: the control's logic itself, from the module that this program is
// linked with, in a container without windows.

#include "programs/form_host/hosted_form.h"

#include <future>
#include <utility>

#include "control/SecurityCtrl.h"
#include "platform/conversions.h"
#include "runtime/runtime_error.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

// The form's bag in the manner of the control's own container interface.
class BagOfControl final : public PropertyBag {
 public:
  explicit BagOfControl(FormBag& bag) : bag_(bag) {}

  TaggedValue ReadProperty(const Text& name, const TaggedValue& default_value) override {
    const TaggedValue* const value = bag_.Find(name);
    return value != nullptr ? *value : default_value;
  }
  void WriteProperty(const Text& name, const TaggedValue& value,
                     const TaggedValue& default_value) override {
    if (value != default_value) bag_.Put(name, value);
  }

 private:
  FormBag& bag_;
};

class StandInForm final : public HostedForm, private ControlSite {
 public:
  explicit StandInForm(ChangeListener listener) : listener_(std::move(listener)) {
    control_.Initialize();
  }
  StandInForm(const StandInForm&) = delete;
  StandInForm& operator=(const StandInForm&) = delete;
  ~StandInForm() override { control_.Terminate(); }

  void Load(FormBag& bag) override {
    BagOfControl bag_of_control(bag);
    control_.ReadProperties(bag_of_control);
    control_.Resize();
    needs_saving_ = false;
  }
  void Save(FormBag& bag) override {
    BagOfControl bag_of_control(bag);
    control_.WriteProperties(bag_of_control);
    needs_saving_ = false;
  }
  bool NeedsSaving() override { return needs_saving_; }

  SizeInTwips Size() override { return size_; }
  std::string Show() override { return "nothing, as the stand-in has no windows"; }
  void StayUntilEnter() override {}

  TaggedValue Get(const Text& member) override {
    TaggedValue value;
    WithSetting(member, [&](const auto& setting) { value = control_.Get(setting); });
    return value;
  }
  void Put(const Text& member, const TaggedValue& value) override {
    WithSetting(member, [&](const auto& setting) { Put(setting, value); });
  }
  std::int32_t GetCRCValue() override { return control_.GetCRCValue(); }

 private:
  // A member by its name, as a late-bound caller finds it.
  template <class Body>
  static void WithSetting(const Text& member, Body body) {
    bool is_found = false;
    settings::ForEach([&](const auto& setting) {
      if (FromUtf8(setting.property.name) != member) return;
      is_found = true;
      body(setting);
    });
    constexpr std::int32_t kNoSuchMember = 438;
    if (!is_found) Raise(kNoSuchMember, member);
  }

  void Put(const settings::Setting<Text>& setting, const TaggedValue& value) {
    control_.Put(setting, ToText(value));
  }
  void Put(const settings::Setting<std::int16_t>& setting, const TaggedValue& value) {
    control_.Put(setting, ToInteger16(value));
  }
  void Put(const settings::Setting<Boolean16>& setting, const TaggedValue& value) {
    control_.Put(setting, ToBoolean(value));
  }

  void PropertyChanged(const identities::Property& property) override {
    needs_saving_ = true;
    listener_(property.entry);
  }
  void SetHeight(float twips) override { size_.height = static_cast<long>(twips); }
  void SetWidth(float twips) override { size_.width = static_cast<long>(twips); }

  ChangeListener listener_;
  SizeInTwips size_;
  bool needs_saving_ = false;
  SecurityCtrl control_{*this};
};

}  // namespace

std::unique_ptr<HostedForm> MakeForm(ChangeListener listener, CallLog* /*log*/) {
  return std::make_unique<StandInForm>(std::move(listener));
}

void OnFreshThread(const std::function<void()>& body) {
  std::async(std::launch::async, body).get();
}

}  // namespace quorvane::programs
