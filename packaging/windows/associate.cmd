@echo off
rem Lets Explorer offer this folder's KTRconfig for XML files, for this user alone; /remove takes that back. Nothing else
rem that opens XML files changes.
set class=HKCU\Software\Classes\KTRconfig.Configuration
if /i "%~1"=="/remove" goto remove
reg add "%class%" /ve /d KTRconfig /f >nul
reg add "%class%\DefaultIcon" /ve /d "%~dp0KTRconfig.exe,0" /f >nul
reg add "%class%\shell\open\command" /ve /d "\"%~dp0KTRconfig.exe\" \"%%1\"" /f >nul
reg add "HKCU\Software\Classes\.xml\OpenWithProgids" /v KTRconfig.Configuration /d "" /f >nul
goto :eof
:remove
reg delete "%class%" /f >nul
reg delete "HKCU\Software\Classes\.xml\OpenWithProgids" /v KTRconfig.Configuration /f >nul
