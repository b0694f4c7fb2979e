@echo off
rem Undoes what register.cmd did, with the same word "user" if it was given there.
setlocal
if /i "%~1"=="user" (
  regsvr32 /s /u /n /i:user "%~dp0Halvane.dll"
) else (
  regsvr32 /s /u "%~dp0Halvane.dll"
)
set code=%errorlevel%
if %code% equ 0 goto done
echo Halvane.dll could not be unregistered.
if %code% equ 3 echo It cannot be loaded: it is missing here, or this is no 64-bit Windows.
if %code% equ 4 echo It is not the Halvane.dll of this folder: it knows no registration.
if %code% equ 5 echo The registry refused. For the whole machine an administrator must do it; for you alone: unregister.cmd user
if %code% lss 3 echo regsvr32 ended with code %code%.
if %code% gtr 5 echo regsvr32 ended with code %code%.
exit /b 1
:done
echo Halvane.dll is not registered any more.
