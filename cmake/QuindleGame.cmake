# Functions that build a game for the player: a game library, its game folder,
# its room libraries, and a test that plays it headless.
#
#   quindle_add_game(<target> SOURCES <files>... [FOLDER <dir>] [TITLE <text>]
#                    [ASSETS <dirs>...] [DEPENDS <targets>...])
#       Builds the game library <target> into its game folder (default
#       ${CMAKE_CURRENT_BINARY_DIR}/<target>) and writes the folder's game.txt.
#       At build time the contents of each ASSETS folder are copied into the
#       game folder. The game library builds after the DEPENDS targets: a
#       program that makes assets, run by a custom target, writes into the
#       folder itself (the property QUINDLE_GAME_FOLDER of <target> names it).
#
#   Games and rooms are built with line information in every build type, so
#   that a crash report names their functions and lines.
#
#   quindle_add_room(<game target> <number> SOURCES <files>...)
#       Builds room library <number> (1..9999999), target <game target>_room_<number>,
#       into the game's folder, where the player's room manager finds it.
#
#   quindle_add_playthrough_test(<name> GAME <game target> SCRIPT <file>
#                                [TICKS <n>] [FRAMES <t1,t2,...>])
#       Adds a test that plays the game headless with quindle-player from the
#       input script, writing frames at the given ticks to <name>-out/, and fails
#       on any fault the player reports: an exit status other than 0, a failed
#       check, or memory the game did not give back.
#
#   quindle_add_replay_test(<name> GAME <game target> TAPE <file>)
#       Adds a test that replays the tape (made with quindle-player --record)
#       on the game's folder headless, and fails when the game went another way
#       than on the tape (the player's report names the frame and the call),
#       when the tape cannot be read or ends before its game did, or on a
#       failed check.
include_guard(GLOBAL)

# A configure error for arguments no function takes, or for a required
# argument (`value`) left empty: `missing` says what is wrong then.
function(_quindle_check_arguments where unparsed value missing)
  if(unparsed)
    message(FATAL_ERROR "${where}: unknown arguments: ${unparsed}")
  endif()
  if(NOT value)
    message(FATAL_ERROR "${where}: ${missing}")
  endif()
endfunction()

function(quindle_add_game target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "FOLDER;TITLE" "SOURCES;ASSETS;DEPENDS")
  _quindle_check_arguments("quindle_add_game(${target})" "${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}"
                           "SOURCES names no file")
  if(NOT arg_FOLDER)
    set(arg_FOLDER ${CMAKE_CURRENT_BINARY_DIR}/${target})
  endif()
  get_filename_component(folder "${arg_FOLDER}" ABSOLUTE BASE_DIR ${CMAKE_CURRENT_BINARY_DIR})
  foreach(dir ${arg_ASSETS})
    get_filename_component(dir "${dir}" ABSOLUTE BASE_DIR ${CMAKE_CURRENT_SOURCE_DIR})
    if(NOT IS_DIRECTORY "${dir}")
      message(FATAL_ERROR "quindle_add_game(${target}): ASSETS folder ${dir} does not exist")
    endif()
    list(APPEND assets "${dir}")
  endforeach()
  foreach(dep ${arg_DEPENDS})
    if(NOT TARGET ${dep})
      message(FATAL_ERROR "quindle_add_game(${target}): DEPENDS names ${dep}, which is not a target")
    endif()
  endforeach()

  # The game library: shared, so that its rooms link against it. The $<1:>
  # keeps multi-configuration generators from adding a folder per configuration.
  add_library(${target} SHARED ${arg_SOURCES})
  target_link_libraries(${target} PUBLIC quindle::quindle quindle::game)
  _quindle_line_info(${target})
  set_target_properties(${target} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY "$<1:${folder}>"
    RUNTIME_OUTPUT_DIRECTORY "$<1:${folder}>"
    QUINDLE_GAME_FOLDER "${folder}")

  # game.txt names the library relative to the folder, so the folder can move.
  set(text "library $<TARGET_FILE_NAME:${target}>\n")
  if(DEFINED arg_TITLE)
    string(REPLACE "\"" "'" title "${arg_TITLE}")
    string(APPEND text "title \"${title}\"\n")
  endif()
  file(GENERATE OUTPUT ${folder}/game.txt CONTENT "${text}")

  if(assets)
    set(copies)
    foreach(dir ${assets})
      list(APPEND copies COMMAND ${CMAKE_COMMAND} -E copy_directory ${dir} ${folder})
    endforeach()
    add_custom_target(${target}_assets ${copies}
      COMMENT "Copying the assets of ${target} into ${folder}" VERBATIM)
    add_dependencies(${target} ${target}_assets)
  endif()
  if(arg_DEPENDS)
    add_dependencies(${target} ${arg_DEPENDS})
  endif()
endfunction()

# A crash report names the game's and the rooms' functions and lines: they
# are built with line tables in every build type (the debug ones have more).
# Set QUINDLE_GAME_LINE_INFO to OFF to leave them out.
function(_quindle_line_info target)
  if(NOT DEFINED QUINDLE_GAME_LINE_INFO OR QUINDLE_GAME_LINE_INFO)
    target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug,RelWithDebInfo>>:-g1>)
  endif()
endfunction()

# The game folder of a target made by quindle_add_game, or a configure error
# naming the argument.
function(_quindle_game_folder caller game out)
  if(NOT TARGET ${game})
    message(FATAL_ERROR "${caller}: game target '${game}' does not exist (make it with quindle_add_game first)")
  endif()
  get_target_property(folder ${game} QUINDLE_GAME_FOLDER)
  if(NOT folder)
    message(FATAL_ERROR "${caller}: '${game}' is not a game target made by quindle_add_game")
  endif()
  set(${out} "${folder}" PARENT_SCOPE)
endfunction()

function(quindle_add_room game number)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "SOURCES")
  _quindle_game_folder("quindle_add_room(${game} ${number})" ${game} folder)
  if(NOT number MATCHES "^[0-9]+$" OR number LESS 1 OR number GREATER 9999999)
    message(FATAL_ERROR "quindle_add_room(${game} ${number}): the room number must be 1..9999999, not '${number}'")
  endif()
  _quindle_check_arguments("quindle_add_room(${game} ${number})" "${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}"
                           "SOURCES names no file")
  # One module per room, named by its number: the room manager loads <number>.so
  # (on Windows <number>.dll) from the game folder.
  set(room ${game}_room_${number})
  set(suffix ".so")
  if(WIN32)
    set(suffix ".dll")
  endif()
  add_library(${room} MODULE ${arg_SOURCES})
  target_link_libraries(${room} PRIVATE ${game})
  _quindle_line_info(${room})
  set_target_properties(${room} PROPERTIES
    OUTPUT_NAME "${number}" PREFIX "" SUFFIX "${suffix}" LIBRARY_OUTPUT_DIRECTORY "$<1:${folder}>")
endfunction()

# What a test that runs the player needs, checked at configure time: the game
# target's folder, no stray arguments, the input file named (`missing` says
# what is wrong when it is not), and a player. Sets `folder_var` to the game
# folder and `file_var` to the file's absolute path.
function(_quindle_player_test where game unparsed file missing folder_var file_var)
  _quindle_game_folder("${where}" "${game}" folder)
  _quindle_check_arguments("${where}" "${unparsed}" "${file}" "${missing}")
  if(NOT TARGET quindle::player)
    message(FATAL_ERROR "${where}: quindle-player was not built or installed")
  endif()
  get_filename_component(path "${file}" ABSOLUTE BASE_DIR ${CMAKE_CURRENT_SOURCE_DIR})
  set(${folder_var} ${folder} PARENT_SCOPE)
  set(${file_var} ${path} PARENT_SCOPE)
endfunction()

function(quindle_add_playthrough_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "GAME;SCRIPT;TICKS;FRAMES" "")
  _quindle_player_test("quindle_add_playthrough_test(${name})" "${arg_GAME}" "${arg_UNPARSED_ARGUMENTS}"
                       "${arg_SCRIPT}" "SCRIPT names no input script" folder script)
  set(command $<TARGET_FILE:quindle::player> ${folder} --script ${script}
              --out ${CMAKE_CURRENT_BINARY_DIR}/${name}-out)
  if(arg_TICKS)
    list(APPEND command --ticks ${arg_TICKS})
  endif()
  if(arg_FRAMES)
    list(APPEND command --frame ${arg_FRAMES})
  endif()
  add_test(NAME ${name} COMMAND ${command})
  # A failed check ends the player with a failure status; memory the game did
  # not give back is reported without one.
  set_tests_properties(${name} PROPERTIES
    FAIL_REGULAR_EXPRESSION "blocks were not given back;Assertion failed")
endfunction()

function(quindle_add_replay_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "GAME;TAPE" "")
  _quindle_player_test("quindle_add_replay_test(${name})" "${arg_GAME}" "${arg_UNPARSED_ARGUMENTS}"
                       "${arg_TAPE}" "TAPE names no tape" folder tape)
  add_test(NAME ${name} COMMAND $<TARGET_FILE:quindle::player> ${folder} --replay ${tape} --quiet --no-gif
                                --out ${CMAKE_CURRENT_BINARY_DIR}/${name}-out)
  set_tests_properties(${name} PROPERTIES FAIL_REGULAR_EXPRESSION "Assertion failed")
endfunction()
