@echo off
rem check.cmd [STORIES]: runs the check as the user who starts it, with all stories or those of such names, and writes
rem report.txt.
cd /d "%~dp0"
chcp 1252 >nul
set stories=%~1
if "%stories%"=="" set stories=*
set FONKLAV_SIM_SCENARIO=scenario.txt
set FONKLAV_SIM_LOG=sim.log
set /a passed=0, failed=0
if exist work rmdir /s /q work
mkdir work
probe.exe > report.txt
set result=%errorlevel%
type report.txt
if not %result%==0 goto end
unit-tests.exe --gtest_brief=1 > work\unit-tests.txt 2>&1
call :verdict %errorlevel% "unit tests" work\unit-tests.txt
for /d %%s in (stories\product\%stories%) do call :story product %%~nxs
for /d %%s in (stories\line\%stories%) do call :story line %%~nxs
type stories\left-out.txt >> report.txt
echo %passed% passed, %failed% failed >> report.txt
type steps.txt >> report.txt
echo %passed% passed, %failed% failed
type steps.txt
set result=%failed%
:end
pause
exit /b %result%

:story
rem A name without a star comes here whether there is such a story or not.
if not exist stories\%1\%2 exit /b
set failures=0
set folder=work\%1\%2
mkdir %folder%\data %folder%\log %folder%\base
copy %1\* %folder% >nul
cd %folder%
echo [Paths]> Rufmonpaths.ini
echo ProgramData=%cd%>> Rufmonpaths.ini
set program=FonklavTAPI.exe
if %2==link.partner-on-the-library set program=..\..\..\main-program.exe
for %%h in (1 2) do call :half ..\..\..\stories\%1\%2 %%h
rem It may still hold what it has inherited: the first half's file.
taskkill /f /im FonklavTAPI.exe >nul 2>nul
type 1.txt 2.txt > conversation.txt 2>nul
cd ..\..\..
call :verdict %failures% "%1: %2" %folder%\conversation.txt
exit /b

:half
rem What could not be started has failed. A file for each: a dialer that outlives the first may hold what that wrote.
cmd /c exit 1
..\..\..\suite.exe %program% < %1\%2.txt > %2.txt 2>&1
if not %errorlevel%==0 set failures=1
exit /b

:verdict
set word=PASS
if not %1==0 set word=FAIL
if %1==0 (set /a passed+=1) else (set /a failed+=1)
echo %word%  %~2
echo %word%  %~2 >> report.txt
for %%w in (PASSED FAILED found fact screen) do find " %%w " < %3 >> report.txt
