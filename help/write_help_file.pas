{ Writes a help file (.chm) from a project. Usage: write_help_file PROJECT FOLDER OUTPUT

  The project is text, a word and its value a line, in any order:
    title TEXT           of the window
    home PAGE            shown first
    contents FILE        the tree of contents, as a site map
    index FILE           the keywords, as a site map
    context NUMBER PAGE  what a program asks for by number
    file NAME            what else goes in
  Names are relative to FOLDER, with "/". Nothing of the machine or of the time gets into the file. }
program write_help_file;

{$mode objfpc}{$H+}

uses
  {$ifdef unix} cthreads, {$endif} Classes, SysUtils, chmtypes, chmwriter;

const
  English = $0409;
  WindowName = 'main';
  { Contents, index and search beside the page; the page's place in the contents follows the reader. }
  NavigationPane = $63520;
  { Hide, back, forward, refresh, home, options, print. }
  Buttons = $307E;

type
  THelpFile = class
  private
    Folder, Home: string;
    Output: TFileStream;
    Writer: TChmWriter;
    function Stream(const Name: string): TMemoryStream;
    function FileData(const Name: string; out Path, Plain: string; var Data: TStream): boolean;
    procedure AppendNavigation(Sender: TObject);
    procedure AddLine(const Line: string);
    procedure AddWindow;
    procedure ForgetTheTime;
  public
    constructor Create(const AFolder, AOutput: string);
    destructor Destroy; override;
    procedure Write(const Project: string);
  end;

function TakeWord(var Line: string): string;
var
  Space: integer;
begin
  Space := Pos(' ', Line + ' ');
  Result := Copy(Line, 1, Space - 1);
  Delete(Line, 1, Space);
end;

constructor THelpFile.Create(const AFolder, AOutput: string);
begin
  Folder := IncludeTrailingPathDelimiter(AFolder);
  Output := TFileStream.Create(AOutput, fmCreate);
  Writer := TChmWriter.Create(Output, False);
  Writer.LocaleID := English;
  Writer.FullTextSearch := True;
  Writer.OnGetFileData := @FileData;
  Writer.OnLastFile := @AppendNavigation;
end;

destructor THelpFile.Destroy;
begin
  Writer.Free;
  Output.Free;
  inherited Destroy;
end;

function THelpFile.Stream(const Name: string): TMemoryStream;
begin
  Result := TMemoryStream.Create;
  Result.LoadFromFile(Folder + Name);
end;

{ The writer asks for one file after the other; a result of True would say that the last one is taken. }
function THelpFile.FileData(const Name: string; out Path, Plain: string; var Data: TStream): boolean;
var
  Content: TMemoryStream;
begin
  Content := Stream(Name);
  Data.CopyFrom(Content, 0);
  Content.Free;
  Data.Position := 0;
  Plain := ExtractFileName(Name);
  Path := '/' + Copy(Name, 1, Length(Name) - Length(Plain));
  Result := False;
end;

procedure THelpFile.AppendNavigation(Sender: TObject);
var
  Content: TMemoryStream;
begin
  Content := Stream(Writer.TOCName);
  Writer.AppendTOC(Content);
  Content.Free;
  Content := Stream(Writer.IndexName);
  Writer.AppendIndex(Content);
  Content.Free;
end;

procedure THelpFile.AddLine(const Line: string);
var
  Rest, Word: string;
  Context: longint;
begin
  Rest := Line;
  Word := TakeWord(Rest);
  case Word of
    '': ;
    'title': Writer.Title := Rest;
    'home': Home := Rest;
    'contents': Writer.TOCName := Rest;
    'index': Writer.IndexName := Rest;
    'file': Writer.FilesToCompress.Add(Rest);
    'context':
    begin
      Context := StrToInt(TakeWord(Rest));
      Writer.AddContext(Context, Rest);
    end;
    else raise Exception.Create('unknown word in the project: ' + Word);
  end;
end;

procedure THelpFile.AddWindow;
var
  Window: TCHMWindow;
begin
  Window := TCHMWindow.Create('');
  Window.window_type := WindowName;
  Window.Title_bar_text := Writer.Title;
  Window.Toc_file := Writer.TOCName;
  Window.index_file := Writer.IndexName;
  Window.Default_File := Home;
  Window.Home_button_file := Home;
  Window.nav_style := NavigationPane;
  Window.navpanewidth := 240;
  Window.buttons := Buttons;
  Window.left := 60;
  Window.top := 40;
  Window.right := 1060;
  Window.bottom := 760;
  Window.flags := [valid_Navigation_pane_style, valid_Initial_window_position,
    valid_Navigation_pane_width, valid_Buttons];
  Writer.Windows.Add(Window);
  Writer.DefaultWindow := WindowName;
  Writer.DefaultPage := Home;
end;

{ The writer stamps the file twice: in its header, and in the uncompressed file #SYSTEM, as the entry of type 10 and
  length 4 before the name of the program. No reader looks at either. }
procedure THelpFile.ForgetTheTime;
const
  HeaderStampAt = $10;
  NameOfProgram = 'HHA Version';
  EntryHead = 4;
  StampHead = #10#0#4#0;
var
  Content: string;
  StampAt: SizeInt;
begin
  SetLength(Content, Output.Size);
  Output.Position := 0;
  Output.ReadBuffer(Content[1], Length(Content));
  StampAt := Pos(NameOfProgram, Content) - EntryHead - SizeOf(DWord);
  if (StampAt <= EntryHead) or (Copy(Content, StampAt - EntryHead, EntryHead) <> StampHead) then
    raise Exception.Create('found no time stamp in #SYSTEM');
  Output.Position := HeaderStampAt;
  Output.WriteDWord(0);
  Output.Position := StampAt - 1;  { positions in a text count from 1 }
  Output.WriteDWord(0);
end;

procedure THelpFile.Write(const Project: string);
var
  Lines: TStringList;
  Line: string;
begin
  Lines := TStringList.Create;
  Lines.LoadFromFile(Project);
  for Line in Lines do AddLine(Line);
  Lines.Free;
  AddWindow;
  Writer.Execute;
  ForgetTheTime;
end;

var
  HelpFile: THelpFile;

begin
  if ParamCount <> 3 then
  begin
    WriteLn(StdErr, 'usage: write_help_file PROJECT FOLDER OUTPUT');
    Halt(2);
  end;
  try
    HelpFile := THelpFile.Create(ParamStr(2), ParamStr(3));
    try
      HelpFile.Write(ParamStr(1));
    finally
      HelpFile.Free;
    end;
  except
    on Failure: Exception do
    begin
      WriteLn(StdErr, 'write_help_file: ', Failure.Message);
      Halt(1);
    end;
  end;
end.
