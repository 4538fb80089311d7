@echo off
rem Plays the demo headless with its scripted playthrough: the frames, the
rem last one and a GIF of the run go to quindle-out\ in the current folder.
rem Arguments go to the player (quindle-player.exe --help lists them).
"%~dp0quindle-player.exe" "%~dp0demo-game" --script "%~dp0demo-game\playthrough.txt" --ticks 4000 %*
