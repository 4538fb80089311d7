# Functions that build a game for the player: a game library, its game folder,
# its room libraries, and a test that plays it headless.
#
#   quindle_add_game(<target> SOURCES <files>... [FOLDER <dir>] [TITLE <text>]
#                    [ASSETS <dirs>...] [DEPENDS <targets>...] [WEB [PAGE <dir>]])
#       Builds the game library <target> into its game folder (default
#       ${CMAKE_CURRENT_BINARY_DIR}/<target>) and writes the folder's game.txt.
#       At build time the contents of each ASSETS folder are copied into the
#       game folder. The game library builds after the DEPENDS targets: a
#       program that makes assets, run by a custom target, writes into the
#       folder itself (the property QUINDLE_GAME_FOLDER of <target> names it).
#       With WEB, a build with Emscripten's toolchain also makes the game's web
#       page, target <target>_page, in PAGE (default <folder>-page): index.html,
#       game.js and game.wasm (the player, the library and the game with its
#       rooms), game.data with game-data.js (the game folder). Any static file
#       server serves it (docs/WEB.md). Other builds take WEB and make no page.
#
#   Games and rooms are built with line information in every build type, so
#   that a crash report names their functions and lines.
#
#   quindle_add_room(<game target> <number> SOURCES <files>...)
#       Builds room library <number> (1..9999999), target <game target>_room_<number>,
#       into the game's folder, where the player's room manager finds it. In a
#       web build the room is linked into the game's page instead.
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
set(_QUINDLE_GAME_CMAKE_DIR ${CMAKE_CURRENT_LIST_DIR})

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
  cmake_parse_arguments(PARSE_ARGV 1 arg "WEB" "FOLDER;TITLE;PAGE" "SOURCES;ASSETS;DEPENDS")
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
  if(EMSCRIPTEN)
    # A page loads no libraries: the game is linked into it.
    add_library(${target} STATIC ${arg_SOURCES})
  else()
    add_library(${target} SHARED ${arg_SOURCES})
  endif()
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
  if(arg_WEB AND EMSCRIPTEN)
    if(NOT arg_PAGE)
      set(arg_PAGE ${folder}-page)
    endif()
    get_filename_component(page "${arg_PAGE}" ABSOLUTE BASE_DIR ${CMAKE_CURRENT_BINARY_DIR})
    set(title "${arg_TITLE}")
    if(NOT title)
      set(title "${target}")
    endif()
    _quindle_add_page(${target} "${folder}" "${page}" "${title}" "${assets}")
  endif()
endfunction()

# The web page of a game (quindle_add_game ... WEB): the player's loop with
# the game linked in, and the game folder packed beside it.
function(_quindle_add_page target folder page title assets)
  if(NOT TARGET quindle_player_web)
    message(FATAL_ERROR "quindle_add_game(${target} WEB): the player's web half (quindle_player_web) was not built")
  endif()
  # The rooms add their own files (quindle_add_room); the page starts with one
  # that says so.
  set(first ${CMAKE_CURRENT_BINARY_DIR}/${target}_page.cpp)
  # (file(CONFIGURE) writes only what changed, so a configure rebuilds nothing.)
  file(CONFIGURE OUTPUT ${first}
       CONTENT "// The web page of ${target}: its rooms register themselves in files of their own.\n" @ONLY)
  add_executable(${target}_page ${first})
  target_link_libraries(${target}_page PRIVATE quindle_player_web ${target})
  # The player runs unchanged: every frame it shows hands control back to the
  # browser (Asyncify), and the page calls main with the player's arguments.
  target_link_options(${target}_page PRIVATE
    -sASYNCIFY=1 -sASYNCIFY_STACK_SIZE=262144 -sALLOW_MEMORY_GROWTH=1 -sINITIAL_MEMORY=67108864
    -sEXIT_RUNTIME=1 -sINVOKE_RUN=0 -sFORCE_FILESYSTEM=1 "-sEXPORTED_RUNTIME_METHODS=['callMain']")
  set_target_properties(${target}_page PROPERTIES
    OUTPUT_NAME game SUFFIX ".js" RUNTIME_OUTPUT_DIRECTORY "$<1:${page}>")

  # The game folder, packed on every build (the assets may have changed), and
  # the font the soft kernel draws text with, at the path it looks for it.
  find_program(QUINDLE_FILE_PACKAGER file_packager.py
               HINTS ${EMSCRIPTEN_ROOT_PATH}/tools /usr/share/emscripten/tools NO_CMAKE_FIND_ROOT_PATH)
  set(font /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf)
  set(pack --preload ${folder}@/game)
  if(EXISTS ${font})
    list(APPEND pack ${font}@${font})
  endif()
  add_custom_target(${target}_page_data ALL
    COMMAND ${CMAKE_COMMAND} -E env EM_CONFIG=/usr/share/emscripten/.emscripten
            python3 ${QUINDLE_FILE_PACKAGER} ${page}/game.data ${pack} --js-output=${page}/game-data.js
            --exclude "*.a" --exclude "*.o" --quiet
    WORKING_DIRECTORY ${page}
    COMMENT "Packing the game folder of ${target} into ${page}/game.data" VERBATIM)
  add_dependencies(${target}_page_data ${target})
  add_dependencies(${target}_page ${target}_page_data)
  configure_file(${_QUINDLE_GAME_CMAKE_DIR}/quindle-page.html.in ${page}/index.html @ONLY)
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
  set(room ${game}_room_${number})
  if(EMSCRIPTEN)
    _quindle_add_web_room(${game} ${number} ${room} "${arg_SOURCES}")
    return()
  endif()
  # One module per room, named by its number: the room manager loads <number>.so
  # (on Windows <number>.dll) from the game folder.
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

# A room in a web page: its five exports are renamed after the room, so that
# every room of the game links into one page, and a file made here registers
# them under the room's number before the game starts.
function(_quindle_add_web_room game number room sources)
  set(names roomDLLInit roomInit roomDoIt roomHandleEvent roomDispose)
  set(types "void(void*)" "void()" "void()" "int(void*)" "void()")
  add_library(${room} OBJECT ${sources})
  target_link_libraries(${room} PRIVATE ${game})
  set(declarations "")
  set(registrations "")
  foreach(i RANGE 4)
    list(GET names ${i} name)
    list(GET types ${i} type)
    set(renamed quindle_room_${number}_${name})
    target_compile_definitions(${room} PRIVATE ${name}=${renamed})
    string(REGEX REPLACE "^([a-z]+)\\((.*)\\)$" "\\1 ${renamed}(\\2)" declaration "${type}")
    string(APPEND declarations "extern \"C\" ${declaration};\n")
    string(APPEND registrations "        GLPlatformAddRoom(${number}, \"${name}\", reinterpret_cast<void*>(&${renamed}));\n")
  endforeach()
  set(file ${CMAKE_CURRENT_BINARY_DIR}/${room}_register.cpp)
  file(CONFIGURE OUTPUT ${file} CONTENT "// Room ${number} of ${game}, linked into the page: its exports by name.
extern \"C\" int GLPlatformAddRoom(unsigned long uNumber, const char* pExport, void* pFunction);
${declarations}
namespace {
struct Register {
    Register()
    {
${registrations}    }
} gRegister;
} // namespace
" @ONLY)
  if(TARGET ${game}_page)
    target_sources(${game}_page PRIVATE ${file})
    target_link_libraries(${game}_page PRIVATE ${room})
  endif()
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
