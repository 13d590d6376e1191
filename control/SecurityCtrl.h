#pragma once

#include <cstdint>
#include <type_traits>

#include "control/basGlobals.h"
#include "control/control_site.h"
#include "control/settings.h"
#include "platform/app.h"
#include "platform/files.h"
#include "platform/kernel32.h"
#include "platform/oleaut32.h"

namespace quorvane {

/// The logic of the control, apart from any component model: the seven settings, their persistence,
/// the size lock and the checksum of the module's own file.
///
/// The settings are the calling thread's (basGlobals), not the control's: all controls on a thread
/// see and overwrite the same seven values. A control is used on the thread that made it.
class SecurityCtrl {
 public:
  /// The site must outlive the control.
  explicit SecurityCtrl(ControlSite& site, App& module = app(), Files& file_access = files(),
                        Kernel32& kernel = kernel32(), Oleaut32& oleaut = oleaut32());

  // Events of the container. Each ends on a handler that drops the error: at the first failure the
  // rest of the event is skipped, and the event counts as a success.

  /// The control was made. Nothing to do.
  void Initialize();
  /// A newly placed control: False or empty text for the settings whose row says so; the others
  /// keep what the thread holds.
  void InitProperties();
  /// A control from a saved form: all seven, one at a time, each stored as soon as it is read and
  /// converted.
  void ReadProperties(PropertyBag& bag);
  /// The container saves: all seven in the same order, each with its default.
  void WriteProperties(PropertyBag& bag);
  /// Locks the size at kSizeInTwips, height first, whatever was asked for.
  void Resize();
  /// The control ends. Nothing to do: the thread keeps the settings.
  void Terminate();

  // The members of the interface _SecurityCtrl: get and put of each row of settings.h, and the
  // checksum.

  /// A copy of the thread's value. Cannot fail.
  template <class Value>
  [[nodiscard]] Value Get(const settings::Setting<Value>& setting) const {
    return basGlobals::connectionSettings().*setting.field;
  }
  /// Stores the value, then notifies the container; an error of the notification goes to the
  /// caller, and the value stays stored. Nothing is checked.
  template <class Value>
  void Put(const settings::Setting<Value>& setting, const std::type_identity_t<Value>& value) {
    // Kept: the 16 bits of a Boolean are stored as given, without making them -1 or 0, so a host
    // that puts 1 reads 1. Pinned by SecurityCtrl.UseProxyKeepsItsBitsUntilItIsLoadedAgain.
    basGlobals::connectionSettings().*setting.field = value;
    site_.PropertyChanged(setting.property);
  }

  /// The CRC-32 of the module's own file on disk, read afresh at each call: App's path, a
  /// backslash, App's name, ".ocx". Raises file not found (53, source: App's name and ".File") when
  /// no such file is there, the platform's error when it cannot be opened or read, overflow (6)
  /// when it is too large. No file stays open.
  [[nodiscard]] std::int32_t GetCRCValue();

  /// The locked height and width.
  static constexpr float kSizeInTwips = 420.0F;

 private:
  ControlSite& site_;
  App& module_;
  Files& files_;
  Kernel32& kernel_;
  Oleaut32& oleaut_;
};

}  // namespace quorvane
