// The form over the stand-ins: the control's logic itself, from the module that this program is
// linked with, in a container without windows.

#include "programs/form_host/hosted_form.h"

#include <array>
#include <future>
#include <utility>

#include "control/SecurityCtrl.h"
#include "runtime/runtime_error.h"

namespace quorvane::examples {
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

  TaggedValue Get(const Text& member) override { return MemberOf(member).get(control_); }
  void Put(const Text& member, const TaggedValue& value) override {
    MemberOf(member).put(control_, value);
  }
  std::int32_t GetCRCValue() override { return control_.GetCRCValue(); }

 private:
  // A member by its name, as a late-bound caller finds it.
  struct Member {
    const char16_t* name;
    TaggedValue (*get)(const SecurityCtrl&);
    void (*put)(SecurityCtrl&, const TaggedValue&);
  };

  static const Member& MemberOf(const Text& name) {
    using Control = SecurityCtrl;
    using Value = TaggedValue;
    static constexpr auto kMembers = std::to_array<Member>({
        {u"ServerAddress", [](const Control& c) { return Value(c.ServerAddress()); },
         [](Control& c, const Value& v) { c.PutServerAddress(v.ToText()); }},
        {u"ServerPort", [](const Control& c) { return Value(c.ServerPort()); },
         [](Control& c, const Value& v) { c.PutServerPort(v.ToInteger16()); }},
        {u"ServerFile", [](const Control& c) { return Value(c.ServerFile()); },
         [](Control& c, const Value& v) { c.PutServerFile(v.ToText()); }},
        {u"UseProxy", [](const Control& c) { return Value(c.UseProxy()); },
         [](Control& c, const Value& v) { c.PutUseProxy(v.ToBoolean()); }},
        {u"ProxyServer", [](const Control& c) { return Value(c.ProxyServer()); },
         [](Control& c, const Value& v) { c.PutProxyServer(v.ToText()); }},
        {u"UserName", [](const Control& c) { return Value(c.UserName()); },
         [](Control& c, const Value& v) { c.PutUserName(v.ToText()); }},
        {u"Password", [](const Control& c) { return Value(c.Password()); },
         [](Control& c, const Value& v) { c.PutPassword(v.ToText()); }},
    });
    for (const Member& member : kMembers)
      if (name == Text(member.name)) return member;
    constexpr std::int32_t kNoSuchMember = 438;
    Raise(kNoSuchMember, name);
  }

  void PropertyChanged(const Text& name) override {
    needs_saving_ = true;
    listener_(name);
  }
  void SetHeight(float twips) override { size_.height = static_cast<long>(twips); }
  void SetWidth(float twips) override { size_.width = static_cast<long>(twips); }

  ChangeListener listener_;
  SizeInTwips size_;
  bool needs_saving_ = false;
  SecurityCtrl control_{*this};
};

}  // namespace

std::unique_ptr<HostedForm> MakeForm(ChangeListener listener) {
  return std::make_unique<StandInForm>(std::move(listener));
}

void OnFreshThread(const std::function<void()>& body) {
  std::async(std::launch::async, body).get();
}

}  // namespace quorvane::examples
