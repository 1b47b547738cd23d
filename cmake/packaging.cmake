# What is installed.
#
# `cmake --install` serves the folder of Kestrel's files, which may hold the files of a service that
# is in use: it brings the program and the language files, and none of the service's own files.

if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
  set(CMAKE_INSTALL_PREFIX /opt/kestrel CACHE PATH "The folder of Kestrel's files" FORCE)
endif()
include(GNUInstallDirs)

# The program looks for everything beside itself, so it does not go to a folder bin.
install(TARGETS harrier RUNTIME DESTINATION . COMPONENT program)
install(SCRIPT cmake/install_languages.cmake COMPONENT languages)
install(FILES man/harrier.8 DESTINATION ${CMAKE_INSTALL_MANDIR}/man8 COMPONENT manual)
