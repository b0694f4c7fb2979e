@echo off
rem Undoes what register.cmd did, with the same word "user" if it was given there.
"%~dp0register.cmd" undo %*
