# Run by `cmake --install`: puts the language files into the folder of Kestrel's files.
#
# A file lang_NN.ini may serve several programs, each with a section of its own, and the texts of
# the others exist nowhere else. So a file that is there already is replaced only if it is ours
# alone, which is to say that [Harrier] is its one section. Every other one stays as it is.

cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX NORMALIZE)
file(GLOB languages "${CMAKE_CURRENT_LIST_DIR}/../languages/lang_*.ini")
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
    message(STATUS "Kept: ${present}, which is not ours alone. docs/files.md tells how to put our "
      "section [Harrier] into it")
  endif()
endforeach()
