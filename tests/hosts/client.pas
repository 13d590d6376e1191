program client;
{ The control from Pascal, by the unit that the importer made of the type library: early bound, late bound, and by the
  dispinterface. }
{$mode objfpc}{$H+}
uses
  windows, activex, comobj, sysutils, variants, QuorvaneSecurity_443_16_TLB;

function CoFreeUnusedLibrariesEx(delay, reserved: DWORD): HRESULT; stdcall; external 'ole32.dll';

procedure EarlyBound;
var
  control: _SecurityCtrl;
begin
  control := CoSecurityCtrl.Create;
  control.ServerAddress := 'early.example.com';
  control.ServerPort := 8080;
  control.UseProxy := True;
  writeln('early: ServerAddress=', control.ServerAddress, ' ServerPort=', control.ServerPort, ' UseProxy=',
    control.UseProxy);
  writeln('GetCRCValue=', control.GetCRCValue);
end;

procedure LateBound;
var
  control: Variant;
begin
  control := CreateOleObject('QuorvaneSecurity.SecurityCtrl');
  control.ServerAddress := 'late.example.com';
  writeln('late: ServerAddress=', control.ServerAddress, ' ServerPort=', control.ServerPort);
  try
    control.ServerPort := 70000;
    writeln('A PORT OF 70000 WAS TAKEN');
  except
    on E: EOleSysError do writeln('late: a port of 70000 gives ', IntToHex(E.ErrorCode, 8));
  end;
end;

procedure ByDispinterface;
var
  control: _SecurityCtrlDisp;
begin
  control := CreateComObject(CLASS_SecurityCtrl) as _SecurityCtrlDisp;
  control.ServerAddress := 'dispinterface.example.com';
  writeln('dispinterface: ServerAddress=', control.ServerAddress);
  writeln('GetCRCValue=', control.GetCRCValue);
end;

procedure TellWhetherModuleGoes;
var
  CanUnload: function: HRESULT; stdcall;
begin
  Pointer(CanUnload) := GetProcAddress(GetModuleHandle('QuorvaneSecurity.ocx'), 'DllCanUnloadNow');
  if Assigned(CanUnload) and (CanUnload() = S_OK) then writeln('unused') else writeln('STILL IN USE');
  CoFreeUnusedLibrariesEx(0, 0);
  if GetModuleHandle('QuorvaneSecurity.ocx') = 0 then writeln('unloaded') else writeln('STILL LOADED');
end;

begin
  EarlyBound;
  LateBound;
  ByDispinterface;
  TellWhetherModuleGoes;
end.
