# What `cmake --install` puts under the prefix, and the Debian package.
#
#   lib/libquindle.so.<version>          the library, SONAME libquindle.so.<QUINDLE_SOVERSION>
#   lib/libquindle_kit.so.<version>      the adventure kit, beside it
#   lib/libquindle_{ledger,folderfile,recording,soft}.a   the kernels and their readers
#   include/quindle/                     every public header (cmake/QuindleHeaders.cmake)
#   bin/quindle-player                   finds the library by a relative run path
#   lib/cmake/quindle/                   the CMake package, its version file, the
#                                        exported targets and the game-building functions
#   lib/pkgconfig/quindle{,-recording,-soft}.pc
#   share/doc/quindle/                   README and docs
include(CMakePackageConfigHelpers)

set(QUINDLE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/quindle)
set(QUINDLE_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/quindle)

# ----- the library, the ledger and the game's view of its host -----
install(TARGETS quindle quindle_ledger quindle_folderfile quindle_game EXPORT quindleTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${QUINDLE_HEADERS_CORE} DESTINATION ${QUINDLE_HEADER_DIR})
install(EXPORT quindleTargets NAMESPACE quindle:: DESTINATION ${QUINDLE_CMAKE_DIR})
set(QUINDLE_COMPONENTS)

# ----- the recording kernel -----
install(TARGETS quindle_recording EXPORT quindleRecordingTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${QUINDLE_HEADERS_RECORDING} DESTINATION ${QUINDLE_HEADER_DIR})
install(EXPORT quindleRecordingTargets NAMESPACE quindle:: DESTINATION ${QUINDLE_CMAKE_DIR})
list(APPEND QUINDLE_COMPONENTS recording)

# ----- the soft kernel -----
if(TARGET quindle_soft)
  install(TARGETS quindle_soft EXPORT quindleSoftTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(FILES ${QUINDLE_HEADERS_SOFT} DESTINATION ${QUINDLE_HEADER_DIR})
  install(EXPORT quindleSoftTargets NAMESPACE quindle:: DESTINATION ${QUINDLE_CMAKE_DIR})
  list(APPEND QUINDLE_COMPONENTS soft)
endif()

# ----- the adventure kit -----
if(TARGET quindle_kit)
  file(GLOB QUINDLE_HEADERS_KIT ${PROJECT_SOURCE_DIR}/kit/include/*.h)
  # It finds the library beside it.
  set_target_properties(quindle_kit PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS quindle_kit EXPORT quindleKitTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(FILES ${QUINDLE_HEADERS_KIT} DESTINATION ${QUINDLE_HEADER_DIR})
  install(EXPORT quindleKitTargets NAMESPACE quindle:: DESTINATION ${QUINDLE_CMAKE_DIR})
  list(APPEND QUINDLE_COMPONENTS kit)
endif()

# ----- the player -----
if(TARGET quindle-player)
  # bin/ to lib/ as a relative run path: the install runs from any prefix.
  file(RELATIVE_PATH QUINDLE_BIN_TO_LIB ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(quindle-player PROPERTIES
    EXPORT_NAME player INSTALL_RPATH "$ORIGIN/${QUINDLE_BIN_TO_LIB}")
  install(TARGETS quindle-player EXPORT quindlePlayerTargets RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(EXPORT quindlePlayerTargets NAMESPACE quindle:: DESTINATION ${QUINDLE_CMAKE_DIR})
  list(APPEND QUINDLE_COMPONENTS player)
endif()

# ----- the CMake package -----
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/quindleConfig.cmake.in
  ${PROJECT_BINARY_DIR}/quindleConfig.cmake INSTALL_DESTINATION ${QUINDLE_CMAKE_DIR})
# Before 1.0 a minor release may change the interface: only the same minor version answers.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/quindleConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/quindleConfig.cmake ${PROJECT_BINARY_DIR}/quindleConfigVersion.cmake
  ${PROJECT_SOURCE_DIR}/cmake/QuindleGame.cmake ${PROJECT_SOURCE_DIR}/cmake/quindle-page.html.in
  DESTINATION ${QUINDLE_CMAKE_DIR})

# ----- pkg-config -----
file(RELATIVE_PATH QUINDLE_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" QUINDLE_PC_TO_PREFIX "${QUINDLE_PC_TO_PREFIX}")
set(QUINDLE_PC_FONTCONFIG "")
if(Fontconfig_FOUND)
  set(QUINDLE_PC_FONTCONFIG ", fontconfig")
endif()
foreach(pc quindle quindle-recording quindle-soft)
  if(pc STREQUAL "quindle-soft" AND NOT TARGET quindle_soft)
    continue()
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${pc}.pc.in ${PROJECT_BINARY_DIR}/${pc}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${pc}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

# ----- docs -----
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md")

# ----- the Debian package: cpack -G DEB in the build folder -----
set(CPACK_PACKAGE_NAME quindle)
set(CPACK_PACKAGE_VENDOR "the quindle developers")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The quindle developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
# The shared libraries' own needs come from dpkg-shlibdeps; a game built against
# the static kernels needs their libraries' development packages, and the soft
# kernel's text needs its font.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(TARGET quindle_soft)
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libpng-dev, libgif-dev, libfreetype-dev, fonts-dejavu-core")
  if(Fontconfig_FOUND)
    string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", libfontconfig-dev")
  endif()
endif()
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cmake, pkg-config, libgtest-dev")
include(CPack)
