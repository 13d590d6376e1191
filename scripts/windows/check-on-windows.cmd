@echo off
rem Tries a build on real Windows: registers the module, runs check-install, a script and all test programs, and
rem unregisters. Prints a table at the end.
rem
rem   check-on-windows.cmd FOLDER
rem
rem FOLDER holds QuorvaneSecurity.ocx, SecurityOCX.chm, published-crc.txt, check-install.cmd with its script, client.vbs
rem and, in tests, the test programs. It must be started with an administrator's rights.
rem Exit code: 0 all passed, 1 something failed, 2 wrong arguments.
setlocal
if not exist "%~1\QuorvaneSecurity.ocx" (
  echo usage: check-on-windows.cmd FOLDER      with QuorvaneSecurity.ocx in it
  exit /b 2
)
set folder=%~f1
set tools=%SystemRoot%\SysWOW64
if not exist "%tools%\cscript.exe" set tools=%SystemRoot%\System32
set failed=0
set passed=0
set table=%folder%\results.txt
if exist "%table%" del "%table%"

echo == regsvr32
"%tools%\regsvr32.exe" /s "%folder%\QuorvaneSecurity.ocx"
call :note regsvr32 %errorlevel%

echo == check-install
call "%folder%\check-install.cmd"
call :note check-install %errorlevel%

echo == client.vbs
"%tools%\cscript.exe" //nologo "%folder%\client.vbs" > "%folder%\client.out"
type "%folder%\client.out"
rem The script host tells of a failed script by no exit code.
set last=
for /f "usebackq delims=" %%l in ("%folder%\client.out") do set last=%%l
if "%last%"=="done" (call :note client.vbs 0) else (call :note client.vbs 1)

cd /d "%folder%\tests"
for %%t in (*.exe) do (
  echo == %%~nt
  call :run "%%t" "%%~nt"
)

echo == regsvr32 /u
"%tools%\regsvr32.exe" /s /u "%folder%\QuorvaneSecurity.ocx"
call :note unregistering %errorlevel%

echo == summary
type "%table%"
echo %passed% passed, %failed% failed
if not "%failed%"=="0" exit /b 1
exit /b 0

:run
"%~1" --gtest_brief=1
call :note %2 %errorlevel%
exit /b 0

:note
if "%~2"=="0" (
  set /a passed=passed+1
  >>"%table%" echo passed  %~1
) else (
  set /a failed=failed+1
  >>"%table%" echo FAILED  %~1  exit code %~2
)
exit /b 0
