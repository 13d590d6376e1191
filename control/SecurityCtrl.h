#pragma once

#include <cstdint>

#include "control/control_site.h"
#include "platform/app.h"
#include "platform/files.h"
#include "platform/kernel32.h"
#include "runtime/boolean16.h"
#include "runtime/text.h"

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
                        Kernel32& kernel = kernel32());

  // Events of the container. Each ends on a handler that drops the error: at the first failure the
  // rest of the event is skipped, and the event counts as a success.

  /// The control was made. Nothing to do.
  void Initialize();
  /// A newly placed control: UseProxy to False, ProxyServer, UserName and Password to empty text.
  /// ServerAddress, ServerPort and ServerFile keep what the thread holds.
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

  // The members of the interface _SecurityCtrl. A get cannot fail. A put stores the value first and
  // then notifies the container; an error of the notification goes to the caller, and the value
  // stays stored.

  /// The web server's name or address; any text.
  [[nodiscard]] Text ServerAddress() const;
  /// Stores it, then notifies the container of "ServerAddress".
  void PutServerAddress(const Text& str_New_ServerAddress);
  /// The server's TCP port; 0 on a fresh thread, and any number of 16 bits.
  [[nodiscard]] std::int16_t ServerPort() const;
  /// Stores it, then notifies the container of "ServerPort".
  void PutServerPort(std::int16_t int_New_ServerPort);
  /// The path of the script on the server that receives the form; any text.
  [[nodiscard]] Text ServerFile() const;
  /// Stores it, then notifies the container of "ServerFile".
  void PutServerFile(const Text& str_New_ServerFile);
  /// Whether the way goes through the proxy: the 16 bits as they were put.
  [[nodiscard]] Boolean16 UseProxy() const;
  /// Stores it, then notifies the container of "UseProxy".
  void PutUseProxy(Boolean16 bolUseProxy);
  /// The proxy; any text.
  [[nodiscard]] Text ProxyServer() const;
  /// Stores it, then notifies the container of "ProxyServer".
  void PutProxyServer(const Text& strProxyServer);
  /// The user name that goes with the connection when UseProxy is on; any text.
  [[nodiscard]] Text UserName() const;
  /// Stores it, then notifies the container of "Username".
  void PutUserName(const Text& strUserName);
  /// The password that goes with it, as plain text.
  [[nodiscard]] Text Password() const;
  /// Stores it, then notifies the container of "Password".
  void PutPassword(const Text& strPassword);

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
};

}  // namespace quorvane
