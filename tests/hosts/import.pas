program import;
{ import MODULE: writes the Pascal unit of the module's type library into the current folder, by Free Pascal's importer. }
{$mode objfpc}{$H+}
uses
  classes, sysutils, typelib;
var
  name, package, registration: string;
  dependencies, source: TStringList;
begin
  dependencies := TStringList.Create;
  source := TStringList.Create;
  source.Text := ImportTypelib(WideString(ParamStr(1)), name, dependencies, False, False, True, package, registration);
  source.SaveToFile(name + '.pas');
  writeln(name);
end.
