@echo off
rem Looks whether the control of QuorvaneSecurity.ocx is installed and works; prints a table.
rem
rem   check-install.cmd [CRC]     CRC: the published one; without it, those of published-crc.txt beside this file
rem
rem Exit code: 0 all is well, 1 something is wrong, 2 wrong arguments, 3 the check itself broke off.
rem A 64-bit Windows has two script hosts. The control has 32 bits, so this takes the 32-bit one, in SysWOW64.
setlocal
set host=%SystemRoot%\SysWOW64\cscript.exe
if not exist "%host%" set host=%SystemRoot%\System32\cscript.exe
if not exist "%host%" (
  echo check-install: this Windows has no script host: %host%
  exit /b 3
)
"%host%" //nologo "%~dp0check-install.vbs" %*
set code=%errorlevel%
if "%code%"=="100" exit /b 0
if "%code%"=="1" exit /b 1
if "%code%"=="2" exit /b 2
echo check-install: the script host broke off (%code%). Is Windows Script Host switched off on this machine?
exit /b 3
