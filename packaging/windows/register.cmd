@echo off
rem Registers Halvane.dll, which lies beside this script: for the machine (as administrator), or with the word
rem "user" for the current user alone.
setlocal
if /i "%~1"=="user" (
  regsvr32 /s /n /i:user "%~dp0Halvane.dll"
) else (
  regsvr32 /s "%~dp0Halvane.dll"
)
if errorlevel 1 (
  echo Halvane.dll could not be registered. For the whole machine an administrator must do it.
  exit /b 1
)
echo Halvane.dll is registered.
