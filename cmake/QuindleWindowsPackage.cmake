# The Windows package: cpack -G ZIP in the build folder (tools/windows build
# runs it) makes quindle-<version>-win64.zip, a folder that plays the demo on a
# machine with nothing else installed:
#
#   quindle-player.exe, quindle.dll, libquindle_kit.dll
#   the DLLs these need that Windows does not have (the compiler's runtime, zlib),
#                                   found from their import tables when packing
#   fonts/DejaVuSans.ttf, fonts/copyright    the player's font and its licence
#   demo-game/                      the demo's game folder, its playthrough script
#   play-demo.bat                   plays the demo headless (frames and a GIF
#                                   in quindle-out\); its arguments go to the player
#   README.md, docs/WINDOWS.md
#
# The SDK (headers, import libraries, the CMake package) is not in it.

if(NOT TARGET quindle-player)
  message(STATUS "quindle: no player (QUINDLE_PLAYER is OFF): no Windows package")
  return()
endif()

install(TARGETS quindle-player RUNTIME DESTINATION .)
install(FILES $<TARGET_FILE:quindle> DESTINATION .)
if(TARGET quindle_kit)
  install(FILES $<TARGET_FILE:quindle_kit> DESTINATION .)
endif()
install(FILES /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf /usr/share/doc/fonts-dejavu-core/copyright
  DESTINATION fonts)
if(TARGET demo_assets)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/demo-game/ DESTINATION demo-game)
  install(FILES ${PROJECT_SOURCE_DIR}/demo/playthrough.txt DESTINATION demo-game)
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/play-demo.bat DESTINATION .)
endif()
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION .)
install(FILES ${PROJECT_SOURCE_DIR}/docs/WINDOWS.md DESTINATION docs)

# Last, when everything else is in the folder: the DLLs its programs import.
install(CODE "
  set(QUINDLE_CXX \"${CMAKE_CXX_COMPILER}\")
  set(QUINDLE_OBJDUMP \"${CMAKE_OBJDUMP}\")
  include(\"${PROJECT_SOURCE_DIR}/cmake/QuindleWindowsRuntime.cmake\")
  quindle_install_runtime(\"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")")

set(CPACK_PACKAGE_NAME quindle)
set(CPACK_PACKAGE_VENDOR "the quindle developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME quindle-${PROJECT_VERSION}-win64)
include(CPack)
