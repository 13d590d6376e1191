// A late-bound client of the module. Register the module first, then:
//
//   cscript //nologo client.js
//
// Sets and reads the seven settings, asks for the checksum of the module's file. The last line is
// "done": a caller tests for it, since not every script host tells of a failed script by its exit
// code.

var control = new ActiveXObject("QuorvaneSecurity.SecurityCtrl");

control.ServerAddress = "reports.example.com";
control.ServerPort = 8080;
control.ServerFile = "/scripts/collect.asp";
control.UseProxy = true;
control.ProxyServer = "proxy.example.com:3128";
control.UserName = "clerk";
control.Password = "tea and biscuits";

WScript.Echo("ServerAddress=" + control.ServerAddress);
WScript.Echo("ServerPort=" + control.ServerPort);
WScript.Echo("ServerFile=" + control.ServerFile);
WScript.Echo("UseProxy=" + (control.UseProxy ? -1 : 0));
WScript.Echo("ProxyServer=" + control.ProxyServer);
WScript.Echo("UserName=" + control.UserName);
WScript.Echo("Password=******** (" + control.Password.length + " characters)");

// A value that does not fit is refused, and the setting stays.
try {
  control.ServerPort = 70000;
  WScript.Echo("ServerPort=70000 is taken");
} catch (error) {
  WScript.Echo("ServerPort=70000 is refused");
}
WScript.Echo("ServerPort=" + control.ServerPort);

WScript.Echo("GetCRCValue=" + control.GetCRCValue());
WScript.Echo("done");
