#pragma once

#include <cstdint>
#include <tuple>
#include <type_traits>

#include "control/basGlobals.h"
#include "control/interface/identities.h"
#include "runtime/boolean16.h"
#include "runtime/text.h"

/// The seven settings: for each property of identities.h a row with what the control does with it.
namespace quorvane::settings {

using basGlobals::ConnectionSettings;
using identities::PropertyNamed;

/// What a newly placed control makes of a setting.
enum class NewControl {
  kKeepsIt,    ///< nothing: it stays as the thread holds it
  kDefaultsIt  ///< sets it to its default
};

/// What the control does with one of its properties. `Value` is the type of the field: Text,
/// std::int16_t or Boolean16.
template <class Value>
struct Setting {
  /// A value that the compiler can hold: of a text the characters, as the text itself needs memory.
  using Literal = std::conditional_t<std::is_same_v<Value, Text>, const char16_t*, Value>;

  /// Its names and its dispatch id.
  const identities::Property& property;
  /// Where the thread holds it.
  Value ConnectionSettings::*field;
  /// What a saved form means that has no entry for it; so an equal value is not saved.
  Literal default_value;
  /// What a newly placed control makes of it.
  NewControl new_control;
};

/// The type of the row is that of its field.
template <class Value, class Literal>
Setting(const identities::Property&, Value ConnectionSettings::*, Literal, NewControl)
    -> Setting<Value>;

// Kept: ServerAddress, ServerPort and ServerFile stay as the thread holds them, so a new control on
// a fresh thread has the port 0 and not the 80 of a saved form, and a second one on a form goes on
// with the address of the first. Pinned by
// SecurityCtrl.InitPropertiesLeavesTheServerSettingsAlone.

/// The web server's name or address; any text.
inline constexpr Setting kServerAddress{
    PropertyNamed("ServerAddress"), &ConnectionSettings::ServerAddress, u"", NewControl::kKeepsIt};

/// The server's TCP port: any number of 16 bits.
inline constexpr Setting kServerPort{PropertyNamed("ServerPort"), &ConnectionSettings::ServerPort,
                                     std::int16_t{80}, NewControl::kKeepsIt};

/// The path of the script on the server that receives the form; any text.
inline constexpr Setting kServerFile{PropertyNamed("ServerFile"), &ConnectionSettings::ServerFile,
                                     u"", NewControl::kKeepsIt};

/// Whether the way goes through the proxy: 16 bits, tested for zero only.
inline constexpr Setting kUseProxy{PropertyNamed("UseProxy"), &ConnectionSettings::UseProxy, kFalse,
                                   NewControl::kDefaultsIt};

/// The proxy; any text.
inline constexpr Setting kProxyServer{
    PropertyNamed("ProxyServer"), &ConnectionSettings::ProxyServer, u"", NewControl::kDefaultsIt};

/// The user name that goes with the connection when kUseProxy is on; any text.
inline constexpr Setting kUserName{PropertyNamed("UserName"), &ConnectionSettings::UserName, u"",
                                   NewControl::kDefaultsIt};

/// The password that goes with it.
// Kept: the password is stored, persisted and handed back as plain text; saved forms hold it so.
// Pinned by SecurityCtrl.PersistsThePasswordAsPlainText.
inline constexpr Setting kPassword{PropertyNamed("Password"), &ConnectionSettings::Password, u"",
                                   NewControl::kDefaultsIt};

/// All of them, in the order in which a form is loaded and saved.
inline constexpr std::tuple kAll{kServerAddress, kServerPort, kServerFile, kUseProxy,
                                 kProxyServer,   kUserName,   kPassword};

/// Hands each row to the body, in order.
template <class Body>
void ForEach(Body body) {
  std::apply([&body](const auto&... setting) { (body(setting), ...); }, kAll);
}

}  // namespace quorvane::settings
