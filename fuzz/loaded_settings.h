#pragma once

#include <functional>

#include "control/SecurityCtrl.h"
#include "platform/conversions.h"
#include "runtime/runtime_error.h"

namespace quorvane::fuzz {

using basGlobals::ConnectionSettings;
using basGlobals::connectionSettings;

/// What a bag holds under a name, or the value that stands for none.
using Stored = std::function<TaggedValue(const std::u16string& name, const TaggedValue& missing)>;

/// The settings that a control has which loads from there into fresh ones: one after the other,
/// until one cannot be converted.
[[nodiscard]] inline ConnectionSettings LoadedFrom(const Stored& stored) {
  ConnectionSettings loaded;
  const auto text = [&](const char16_t* name) { return ToText(stored(name, Text(u""))); };
  try {
    loaded.ServerAddress = text(u"ServerAddress");
    loaded.ServerPort = ToInteger16(stored(u"ServerPort", std::int16_t{80}));
    loaded.ServerFile = text(u"ServerFile");
    loaded.UseProxy = ToBoolean(stored(u"UseProxy", kFalse));
    loaded.ProxyServer = text(u"ProxyServer");
    loaded.UserName = text(u"Username");
    loaded.Password = text(u"Password");
  } catch (const RuntimeError&) {
    return loaded;
  }
  return loaded;
}

[[nodiscard]] inline bool Same(const ConnectionSettings& left, const ConnectionSettings& right) {
  return left.ServerAddress == right.ServerAddress && left.ServerPort == right.ServerPort &&
         left.ServerFile == right.ServerFile && left.UseProxy.bits == right.UseProxy.bits &&
         left.ProxyServer == right.ProxyServer && left.UserName == right.UserName &&
         left.Password == right.Password;
}

/// A container that wants to know nothing.
class SilentSite final : public ControlSite {
 public:
  void PropertyChanged(const identities::Property& /*property*/) override {}
  void SetHeight(float /*twips*/) override {}
  void SetWidth(float /*twips*/) override {}
};

/// What the control makes of a bag, into fresh settings.
[[nodiscard]] inline ConnectionSettings LoadInto(SecurityCtrl& control, PropertyBag& bag) {
  connectionSettings() = {};
  control.ReadProperties(bag);
  return connectionSettings();
}

}  // namespace quorvane::fuzz
