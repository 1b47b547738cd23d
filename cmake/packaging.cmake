# What is installed, and the Debian package.
#
# `cmake --install` installs into the folder of Kestrel's files, where a service may be in use. It
# installs the programs, the language files and the manual pages, and no file of the service.

if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
  set(CMAKE_INSTALL_PREFIX /opt/kestrel CACHE PATH "The folder of Kestrel's files" FORCE)
endif()
include(GNUInstallDirs)

# The programs look for all files in their own folder, so they are not installed into a folder bin.
install(TARGETS harrier harrier-check harrier-languages RUNTIME DESTINATION . COMPONENT program)
install(SCRIPT cmake/install_languages.cmake COMPONENT languages)
install(FILES man/harrier.8 man/harrier-check.8 man/harrier-languages.8 DESTINATION ${CMAKE_INSTALL_MANDIR}/man8
  COMPONENT manual)

# --- The Debian package ---------------------------------------------------------------------------
#
# It contains the programs as installed above, and commands for them in the usual folders. The language files lie in /etc/harrier, where dpkg
# asks before it replaces an edited file. The scripts of the package link them into Kestrel's
# folder. dpkg must not own files there: a purge would delete a language file even if other programs
# have added their sections to it.

set(debian "${PROJECT_SOURCE_DIR}/cmake/debian")
set(doc /usr/share/doc/harrier)
file(GLOB languages CONFIGURE_DEPENDS languages/lang_*.ini)

install(FILES ${languages} DESTINATION /etc/harrier COMPONENT debian EXCLUDE_FROM_ALL)
install(PROGRAMS ${debian}/harrier ${debian}/harrier-languages DESTINATION /usr/sbin COMPONENT debian EXCLUDE_FROM_ALL)
install(PROGRAMS ${debian}/harrier-check DESTINATION /usr/bin COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES check/completions/harrier-check merge/completions/harrier-languages
  DESTINATION /usr/share/bash-completion/completions COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES check/completions/_harrier-check merge/completions/_harrier-languages
  DESTINATION /usr/share/zsh/vendor-completions COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES README.md CHANGELOG.md ${debian}/copyright DESTINATION ${doc}
  COMPONENT debian EXCLUDE_FROM_ALL)
install(DIRECTORY docs DESTINATION ${doc} COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES ${debian}/lintian-overrides DESTINATION /usr/share/lintian/overrides RENAME harrier
  COMPONENT debian EXCLUDE_FROM_ALL)

# install_compressed(FILE NAME): Debian wants manual pages and changelogs compressed.
function(install_compressed file name)
  install(CODE "
    set(target \"\$ENV{DESTDIR}${name}\")
    cmake_path(GET target PARENT_PATH folder)
    file(MAKE_DIRECTORY \"\${folder}\")
    execute_process(COMMAND gzip -9cn \"${file}\" OUTPUT_FILE \"\${target}\"
      COMMAND_ERROR_IS_FATAL ANY)
    file(CHMOD \"\${target}\" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)"
    COMPONENT debian EXCLUDE_FROM_ALL)
endfunction()
foreach(page harrier.8 harrier-check.8 harrier-languages.8)
  install_compressed("${PROJECT_SOURCE_DIR}/man/${page}" /usr/share/man/man8/${page}.gz)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /opt/kestrel)
set(CPACK_COMPONENTS_ALL program debian)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_PACKAGE_NAME harrier)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "terminal editor for the configuration of Kestrel")
set(CPACK_PACKAGE_DESCRIPTION
"Harrier edits the configuration of the Kestrel UPS monitoring service at a
terminal, through numbered menus: UPS devices and groups, schedules, messages,
and what happens when a battery runs low.
.
It works on the files in /opt/kestrel, and writes them only when the operator
agrees at the end of a run. The command harrier-check says what Kestrel and
Harrier do not take from the files as it stands there.")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Harrier developers <harrier@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "vim-tiny | vim | nvi")  # a menu opens a script in vi
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${debian}/changelog.in ${PROJECT_BINARY_DIR}/debian/changelog @ONLY)
install_compressed("${PROJECT_BINARY_DIR}/debian/changelog" ${doc}/changelog.gz)

set(conffiles ${languages})
list(TRANSFORM conffiles REPLACE ".*/" "/etc/harrier/")
list(JOIN conffiles "\n" conffiles)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/debian/conffiles CONTENT "@conffiles@\n" @ONLY)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${debian}/postinst ${debian}/prerm ${PROJECT_BINARY_DIR}/debian/conffiles)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
