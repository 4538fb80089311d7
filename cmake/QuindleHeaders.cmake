# The public headers, as a game sees them: one flat folder quindle/, whose
# headers include one another by bare name. The install copies them to
# include/quindle/; the build tree mirrors the same folder with links in
# ${PROJECT_BINARY_DIR}/quindle-include/quindle/, so that a game built beside
# quindle (add_subdirectory, FetchContent) may write #include <quindle/glcel.h> too.

file(GLOB QUINDLE_HEADERS_CORE CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h)
list(APPEND QUINDLE_HEADERS_CORE
  ${PROJECT_SOURCE_DIR}/kernels/ledger/AllocationLedger.h
  ${PROJECT_SOURCE_DIR}/folderfile/FolderFile.h
  ${PROJECT_SOURCE_DIR}/player/quindle_game.h
  ${PROJECT_SOURCE_DIR}/kernels/soft/SoftExtras.h)
set(QUINDLE_HEADERS_RECORDING ${PROJECT_SOURCE_DIR}/kernels/recording/RecordingKernel.h)
# Every header of the soft kernel but the window's (only the player has a window).
file(GLOB QUINDLE_HEADERS_SOFT CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/kernels/soft/*.h)
list(REMOVE_ITEM QUINDLE_HEADERS_SOFT
  ${PROJECT_SOURCE_DIR}/kernels/soft/SoftWindow.h ${PROJECT_SOURCE_DIR}/kernels/soft/SoftExtras.h)

set(QUINDLE_HEADER_MIRROR ${PROJECT_BINARY_DIR}/quindle-include)
file(REMOVE_RECURSE ${QUINDLE_HEADER_MIRROR})
file(MAKE_DIRECTORY ${QUINDLE_HEADER_MIRROR}/quindle)
foreach(header ${QUINDLE_HEADERS_CORE} ${QUINDLE_HEADERS_RECORDING} ${QUINDLE_HEADERS_SOFT})
  get_filename_component(name ${header} NAME)
  file(CREATE_LINK ${header} ${QUINDLE_HEADER_MIRROR}/quindle/${name} SYMBOLIC)
endforeach()
