@echo off
rem Undoes what register.cmd did, with the same word "user" if it was given there.
setlocal
if /i "%~1"=="user" (
  regsvr32 /s /u /n /i:user "%~dp0Halvane.dll"
) else (
  regsvr32 /s /u "%~dp0Halvane.dll"
)
if errorlevel 1 (
  echo Halvane.dll could not be unregistered. For the whole machine an administrator must do it.
  exit /b 1
)
echo Halvane.dll is not registered any more.
