# Run when the Windows package is installed: copies into <folder> each DLL that
# a program or DLL there imports and that the compiler's tree has (libstdc++,
# libgcc_s, libwinpthread, zlib, ...), then the DLLs those import, until nothing
# is missing. A DLL the compiler cannot find is the system's (KERNEL32.dll,
# msvcrt.dll, ...). QUINDLE_CXX and QUINDLE_OBJDUMP name the tools.

cmake_policy(PUSH)
cmake_policy(VERSION 3.25)

function(quindle_install_runtime folder)
  file(GLOB_RECURSE pending "${folder}/*.exe" "${folder}/*.dll")
  set(seen "")
  while(pending)
    list(POP_FRONT pending file)
    execute_process(COMMAND "${QUINDLE_OBJDUMP}" -p "${file}" OUTPUT_VARIABLE table
                    RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
      message(FATAL_ERROR "quindle: ${QUINDLE_OBJDUMP} cannot read ${file}")
    endif()
    string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${table}")
    foreach(import ${imports})
      string(REGEX REPLACE "^DLL Name: *" "" name "${import}")
      string(STRIP "${name}" name)
      string(TOLOWER "${name}" key)
      if(key IN_LIST seen)
        continue()
      endif()
      list(APPEND seen "${key}")
      file(GLOB_RECURSE present "${folder}/${name}")
      if(present)
        continue()
      endif()
      execute_process(COMMAND "${QUINDLE_CXX}" -print-file-name=${name} OUTPUT_VARIABLE found
                      OUTPUT_STRIP_TRAILING_WHITESPACE)
      # The compiler prints the bare name back when it has no such file.
      if(NOT IS_ABSOLUTE "${found}" OR NOT EXISTS "${found}")
        continue()
      endif()
      get_filename_component(found "${found}" REALPATH)
      message(STATUS "Installing: ${folder}/${name} (imported; from ${found})")
      file(COPY_FILE "${found}" "${folder}/${name}")
      list(APPEND pending "${folder}/${name}")
    endforeach()
  endwhile()
endfunction()
cmake_policy(POP)
