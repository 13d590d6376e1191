#include "control/SecurityCtrl.h"

#include <utility>

#include "checksum/cBinaryFileStream.h"
#include "checksum/cCRC32.h"
#include "control/basGlobals.h"

namespace quorvane {
namespace {

using basGlobals::connectionSettings;
using basGlobals::ConnectionSettings;

// A setting as it is persisted: the name of its entry and the default that keeps the entry out of
// the saved form.
struct PersistedText {
  const char16_t* name;
  Text ConnectionSettings::*field;
};

constexpr std::int16_t kDefaultPort = 80;

constexpr PersistedText kServerAddress{u"ServerAddress", &ConnectionSettings::ServerAddress};
constexpr PersistedText kServerFile{u"ServerFile", &ConnectionSettings::ServerFile};
constexpr PersistedText kProxyServer{u"ProxyServer", &ConnectionSettings::ProxyServer};
// Kept: the entry is spelled "Username", unlike the member UserName; saved forms hold that
// spelling. Pinned by SecurityCtrl.PersistsUserNameAsUsername.
constexpr PersistedText kUserName{u"Username", &ConnectionSettings::UserName};
// Kept: the password is stored, persisted and handed back as plain text; saved forms hold it so.
// Pinned by SecurityCtrl.PersistsThePasswordAsPlainText.
constexpr PersistedText kPassword{u"Password", &ConnectionSettings::Password};
constexpr const char16_t* kServerPortName = u"ServerPort";
constexpr const char16_t* kUseProxyName = u"UseProxy";

void Read(PropertyBag& bag, const PersistedText& setting) {
  connectionSettings().*setting.field = bag.ReadProperty(setting.name, Text(u"")).ToText();
}

void Write(PropertyBag& bag, const PersistedText& setting) {
  bag.WriteProperty(setting.name, connectionSettings().*setting.field, Text(u""));
}

void Put(ControlSite& site, const PersistedText& setting, const Text& value) {
  connectionSettings().*setting.field = value;
  site.PropertyChanged(setting.name);
}

// The handler that ends every event: the error is dropped and the event counts as a success.
template <class Body>
void DropErrors(Body body) {
  try {
    body();
  } catch (...) {  // NOLINT(bugprone-empty-catch): dropping the error is what containers rely on
  }
}

}  // namespace

SecurityCtrl::SecurityCtrl(ControlSite& site, App& module, Files& file_access, Kernel32& kernel)
    : site_(site), module_(module), files_(file_access), kernel_(kernel) {}

void SecurityCtrl::Initialize() {}

void SecurityCtrl::InitProperties() {
  DropErrors([] {
    // Kept: ServerAddress, ServerPort and ServerFile stay as the thread holds them, so a new
    // control on a fresh thread has the port 0 and not the 80 of a saved form, and a second one
    // on a form goes on with the address of the first. Pinned by
    // SecurityCtrl.InitPropertiesLeavesTheServerSettingsAlone.
    ConnectionSettings& settings = connectionSettings();
    settings.UseProxy = kFalse;
    settings.ProxyServer = u"";
    settings.UserName = u"";
    settings.Password = u"";
  });
}

void SecurityCtrl::ReadProperties(PropertyBag& bag) {
  DropErrors([&bag] {
    Read(bag, kServerAddress);
    connectionSettings().ServerPort = bag.ReadProperty(kServerPortName, kDefaultPort).ToInteger16();
    Read(bag, kServerFile);
    connectionSettings().UseProxy = bag.ReadProperty(kUseProxyName, kFalse).ToBoolean();
    Read(bag, kProxyServer);
    Read(bag, kUserName);
    Read(bag, kPassword);
  });
}

void SecurityCtrl::WriteProperties(PropertyBag& bag) {
  DropErrors([&bag] {
    Write(bag, kServerAddress);
    bag.WriteProperty(kServerPortName, connectionSettings().ServerPort, kDefaultPort);
    Write(bag, kServerFile);
    bag.WriteProperty(kUseProxyName, connectionSettings().UseProxy, kFalse);
    Write(bag, kProxyServer);
    Write(bag, kUserName);
    Write(bag, kPassword);
  });
}

void SecurityCtrl::Resize() {
  DropErrors([this] {
    site_.SetHeight(kSizeInTwips);
    site_.SetWidth(kSizeInTwips);
  });
}

// Kept: the record of settings stays as it is; the thread's other and later controls go on with it.
// Pinned by SecurityCtrl.TerminateLeavesTheSettings.
void SecurityCtrl::Terminate() {}

Text SecurityCtrl::ServerAddress() const { return connectionSettings().ServerAddress; }

void SecurityCtrl::PutServerAddress(const Text& str_New_ServerAddress) {
  Put(site_, kServerAddress, str_New_ServerAddress);
}

std::int16_t SecurityCtrl::ServerPort() const { return connectionSettings().ServerPort; }

void SecurityCtrl::PutServerPort(std::int16_t int_New_ServerPort) {
  connectionSettings().ServerPort = int_New_ServerPort;
  site_.PropertyChanged(kServerPortName);
}

Text SecurityCtrl::ServerFile() const { return connectionSettings().ServerFile; }

void SecurityCtrl::PutServerFile(const Text& str_New_ServerFile) {
  Put(site_, kServerFile, str_New_ServerFile);
}

Boolean16 SecurityCtrl::UseProxy() const { return connectionSettings().UseProxy; }

void SecurityCtrl::PutUseProxy(Boolean16 bolUseProxy) {
  // Kept: the 16 bits are stored as given, without making them -1 or 0, so a host that puts 1
  // reads 1. Pinned by SecurityCtrl.UseProxyKeepsItsBitsUntilItIsLoadedAgain.
  connectionSettings().UseProxy = bolUseProxy;
  site_.PropertyChanged(kUseProxyName);
}

Text SecurityCtrl::ProxyServer() const { return connectionSettings().ProxyServer; }

void SecurityCtrl::PutProxyServer(const Text& strProxyServer) {
  Put(site_, kProxyServer, strProxyServer);
}

Text SecurityCtrl::UserName() const { return connectionSettings().UserName; }

void SecurityCtrl::PutUserName(const Text& strUserName) { Put(site_, kUserName, strUserName); }

Text SecurityCtrl::Password() const { return connectionSettings().Password; }

void SecurityCtrl::PutPassword(const Text& strPassword) { Put(site_, kPassword, strPassword); }

std::int32_t SecurityCtrl::GetCRCValue() {
  // Kept: the extension is a fixed literal and the backslash is added whatever the path ends in; a
  // module under another extension fails with 53. Pinned by
  // GetCRCValue.AlwaysAddsBackslashAndOcx.
  const Text path = module_.Path();
  const Text file_name = path + u"\\" + module_.EXEName() + u".ocx";
  cBinaryFileStream stream(files_, module_, kernel_);
  stream.PutFile(file_name);
  cCRC32 crc;
  return crc.GetFileCrc32(stream);
}

}  // namespace quorvane
