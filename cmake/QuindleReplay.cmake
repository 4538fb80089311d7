# A test that replays a tape against a game folder.
#
#   quindle_add_replay_test(<name> (GAME <game target> | FOLDER <dir>) TAPE <file>
#                           [PLAYER <program>])
#       Adds a test that plays <file> (made with quindle-player --record) on
#       the game folder headless and fails when the game went another way than
#       on the tape (the player's report names the frame and the call), when the
#       tape cannot be read, when it ends before its game did, or on a failed
#       check. GAME names a target whose QUINDLE_GAME_FOLDER property holds its
#       folder; PLAYER defaults to the quindle-player of this build or package.
include_guard(GLOBAL)

function(quindle_add_replay_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "GAME;FOLDER;TAPE;PLAYER" "")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "quindle_add_replay_test(${name}): unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(arg_GAME)
    if(NOT TARGET ${arg_GAME})
      message(FATAL_ERROR "quindle_add_replay_test(${name}): GAME names ${arg_GAME}, which is not a target")
    endif()
    get_target_property(folder ${arg_GAME} QUINDLE_GAME_FOLDER)
  else()
    set(folder "${arg_FOLDER}")
  endif()
  if(NOT folder)
    message(FATAL_ERROR "quindle_add_replay_test(${name}): no game folder (GAME <target> or FOLDER <dir>)")
  endif()
  if(NOT arg_TAPE)
    message(FATAL_ERROR "quindle_add_replay_test(${name}): TAPE names no tape")
  endif()
  get_filename_component(tape "${arg_TAPE}" ABSOLUTE BASE_DIR ${CMAKE_CURRENT_SOURCE_DIR})
  if(arg_PLAYER)
    set(player "${arg_PLAYER}")
  elseif(TARGET quindle::player)
    set(player $<TARGET_FILE:quindle::player>)
  elseif(TARGET quindle-player)
    set(player $<TARGET_FILE:quindle-player>)
  else()
    message(FATAL_ERROR "quindle_add_replay_test(${name}): quindle-player was not built or installed")
  endif()
  add_test(NAME ${name} COMMAND ${player} ${folder} --replay ${tape} --quiet --no-gif
                                --out ${CMAKE_CURRENT_BINARY_DIR}/${name}-out)
  set_tests_properties(${name} PROPERTIES FAIL_REGULAR_EXPRESSION "Assertion failed")
endfunction()
