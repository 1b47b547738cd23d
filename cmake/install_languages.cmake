# Run by `cmake --install`: installs the language files into the folder of Kestrel's files.
#
# A file lang_NN.ini may hold sections of several programs, whose texts may exist nowhere else. An
# existing file is replaced only if [Harrier] is its only section. Any other file stays as it is.

cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX NORMALIZE)
cmake_path(SET from NORMALIZE "${CMAKE_CURRENT_LIST_DIR}/../languages")
file(GLOB languages "${from}/lang_*.ini")
foreach(language IN LISTS languages)
  cmake_path(GET language FILENAME name)
  set(present "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${name}")
  set(ours TRUE)
  if(EXISTS "${present}")
    file(READ "${present}" contents)
    string(REGEX REPLACE "\n\\[Harrier\\]\n" "\n" others "${contents}")
    if(others STREQUAL contents OR others MATCHES "(^|\n)\\[")
      set(ours FALSE)
    endif()
  endif()
  if(ours)
    file(INSTALL "${language}" DESTINATION "${CMAKE_INSTALL_PREFIX}")
  else()
    message(STATUS "Kept: ${present}, which is not Harrier's alone. To add Harrier's texts: "
      "${CMAKE_INSTALL_PREFIX}/harrier-languages --from=${from} --apply")
  endif()
endforeach()
