@echo off
rem Registers both files of the component, for 64-bit and for 32-bit programs: for the machine (as administrator), or
rem with the word "user" for the current user alone. unregister.cmd calls it with the word "undo" before.
setlocal
set name=register.cmd
set undo=
set done=is registered.
set undone=could not be registered.
if /i not "%~1"=="undo" goto whom
set name=unregister.cmd
set undo=/u
set done=is not registered any more.
set undone=could not be unregistered.
shift
:whom
set whom=
set "word=%~1"
if not defined word goto known
if /i not "%word%"=="user" goto unknown
set whom=/n /i:user
set "word=%~2"
if defined word goto unknown
:known
set failed=0

rem A 32-bit command processor sees the folder of 64-bit programs under another name.
set system=%SystemRoot%\System32
if exist "%SystemRoot%\Sysnative\regsvr32.exe" set system=%SystemRoot%\Sysnative
if "%PROCESSOR_ARCHITECTURE%%PROCESSOR_ARCHITEW6432%"=="x86" goto only32
call :file "%system%" Halvane.dll
if not exist "%SystemRoot%\SysWOW64\regsvr32.exe" goto no32
call :file "%SystemRoot%\SysWOW64" x86\Halvane.dll
exit /b %failed%

:unknown
echo Nothing was done: %name% does not take "%word%".
echo %name%         for the machine, as administrator
echo %name% user    for the current user alone
exit /b 2

:only32
call :file "%system%" x86\Halvane.dll
exit /b %failed%

:no32
echo x86\Halvane.dll is left out: this Windows runs no 32-bit programs.
exit /b %failed%

:file
"%~1\regsvr32.exe" /s %undo% %whom% "%~dp0%~2"
set code=%errorlevel%
if %code% equ 0 goto done
set failed=1
echo %~2 %undone%
if %code% equ 3 echo It cannot be loaded: it is missing here, or this Windows does not run programs of its kind.
if %code% equ 4 echo It is not the file of this folder: it knows no registration.
if %code% equ 5 echo The registry refused.
if %code% equ 5 if not defined whom echo For the whole machine an administrator must do it; for you alone add the word: user
if %code% lss 3 echo regsvr32 ended with code %code%.
if %code% gtr 5 echo regsvr32 ended with code %code%.
goto :eof
:done
echo %~2 %done%
goto :eof
