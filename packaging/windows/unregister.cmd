@echo off
rem Undoes what register.cmd did, with the same word "user" if it was given there.
call "%~dp0register.cmd" undo %1
