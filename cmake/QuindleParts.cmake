# Which optional parts this build makes, and why a part is left out.
#
# Each QUINDLE_<PART> option asks for a part. quindle_find_dependencies() looks
# for what the asked-for parts need; a missing dependency turns its part (and
# the parts that stand on it) off for this configure, with one warning naming
# the Debian package that brings it. Installing the package and configuring
# again turns the part back on.

# Turns <part> off for this configure, remembering the reason for the summary.
macro(_quindle_turn_off part reason)
  if(${part})
    set(${part} OFF)
    set(_QUINDLE_WHY_${part} "${reason}")
    list(APPEND _QUINDLE_OFF "${part} (${reason})")
  endif()
endmacro()

# Turns parts off when libraries are missing, with one warning naming them all.
#   _quindle_need("<what is left out>" "<parts>" <found var> <library> <debian package> ...)
macro(_quindle_need what parts)
  set(_quindle_args ${ARGN})
  set(_quindle_lacking)
  set(_quindle_missing_names)
  while(_quindle_args)
    list(POP_FRONT _quindle_args _quindle_found _quindle_library _quindle_package)
    if(NOT ${_quindle_found})
      list(APPEND _quindle_lacking "${_quindle_library} (Debian package ${_quindle_package})")
      list(APPEND _quindle_missing_names "${_quindle_library}")
    endif()
  endwhile()
  if(_quindle_lacking)
    list(JOIN _quindle_lacking ", " _quindle_lacking)
    list(JOIN _quindle_missing_names ", " _quindle_missing_names)
    message(WARNING "quindle: ${_quindle_lacking} not found: building without ${what}.")
    foreach(_quindle_part ${parts})
      _quindle_turn_off(${_quindle_part} "${_quindle_missing_names} not found")
    endforeach()
  endif()
endmacro()

macro(quindle_find_dependencies)
  set(_QUINDLE_OFF)
  # What stands on what: a part asked for without the part it needs is off.
  if(NOT QUINDLE_SOFT)
    _quindle_turn_off(QUINDLE_PLAYER "needs QUINDLE_SOFT")
    _quindle_turn_off(QUINDLE_WINDOW "needs QUINDLE_SOFT")
    _quindle_turn_off(QUINDLE_FUZZ "needs QUINDLE_SOFT")
  endif()
  if(NOT QUINDLE_KIT)
    _quindle_turn_off(QUINDLE_DEMO "needs QUINDLE_KIT")
  endif()
  if(NOT QUINDLE_PLAYER)
    _quindle_turn_off(QUINDLE_WINDOW "needs QUINDLE_PLAYER")
    _quindle_turn_off(QUINDLE_DEMO "needs QUINDLE_PLAYER")
    _quindle_turn_off(QUINDLE_EXAMPLES "needs QUINDLE_PLAYER")
  endif()

  if(QUINDLE_SOFT)
    find_package(PNG QUIET)
    find_package(GIF QUIET)
    find_package(Freetype QUIET)
    find_package(Fontconfig QUIET)
    _quindle_need("the soft kernel, the player, the demo and the fuzz targets"
                  "QUINDLE_SOFT;QUINDLE_PLAYER;QUINDLE_WINDOW;QUINDLE_DEMO;QUINDLE_FUZZ"
                  PNG_FOUND libpng libpng-dev GIF_FOUND giflib libgif-dev
                  FREETYPE_FOUND FreeType libfreetype-dev)
  endif()
  # In a web page the window is the page's canvas: no SDL2.
  if(QUINDLE_WINDOW AND NOT EMSCRIPTEN)
    find_package(SDL2 QUIET)
    _quindle_need("the player's window (--window)" QUINDLE_WINDOW SDL2_FOUND SDL2 libsdl2-dev)
  endif()
  if(QUINDLE_TESTS)
    find_package(GTest QUIET)
    set(_quindle_gmock OFF)
    if(TARGET GTest::gmock)
      set(_quindle_gmock ON)
    endif()
    _quindle_need("the tests" QUINDLE_TESTS
                  GTest_FOUND GoogleTest libgtest-dev _quindle_gmock GoogleMock libgmock-dev)
    if(QUINDLE_TESTS)
      include(GoogleTest)
    endif()
  endif()
  if(QUINDLE_BENCH)
    find_package(benchmark QUIET)
    _quindle_need("the benchmarks" QUINDLE_BENCH benchmark_FOUND "Google Benchmark" libbenchmark-dev)
  endif()
endmacro()

# One line of what is built and one of what is not, at the end of configuring.
function(quindle_report_parts)
  set(on)
  foreach(part KIT SOFT PLAYER WINDOW DEMO EXAMPLES TESTS BENCH FUZZ INSTALL)
    if(QUINDLE_${part})
      list(APPEND on ${part})
    endif()
  endforeach()
  list(JOIN on ", " on)
  if(on STREQUAL "")
    set(on "none")
  endif()
  message(STATUS "quindle ${PROJECT_VERSION}: the library and the recording kernel; optional parts on: ${on}")
  if(_QUINDLE_OFF)
    list(JOIN _QUINDLE_OFF ", " off)
    message(STATUS "quindle: off: ${off}")
  endif()
endfunction()
