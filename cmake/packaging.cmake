# What is installed, and the packages (scripts/package.sh).
#
# `cmake --install` installs into the folder of Kestrel's files, where a service may be in use. It
# installs the programs, the language files and the manual pages, and no file of the service.

if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
  set(CMAKE_INSTALL_PREFIX /opt/kestrel CACHE PATH "The folder of Kestrel's files" FORCE)
endif()
include(GNUInstallDirs)

# The programs look for all files in their own folder, so they are not installed into a folder bin.
list(TRANSFORM programs REPLACE "(.+)" "man/\\1.8" OUTPUT_VARIABLE manuals)
install(TARGETS ${programs} RUNTIME DESTINATION . COMPONENT program)
install(SCRIPT cmake/install_languages.cmake COMPONENT languages)
install(FILES ${manuals} DESTINATION ${CMAKE_INSTALL_MANDIR}/man8 COMPONENT manual)

# --- The packages ---------------------------------------------------------------------------------
#
# Component `package` goes into a Debian package and an RPM package, `debian` and `rpm` into one of
# them, and `archive` into the archive for any other Linux.
#
# The packages contain the programs in Kestrel's folder, and commands for them in the usual folders.
# The language files lie in /etc/harrier, where dpkg and rpm keep an edited file. The scripts of the
# packages link them into Kestrel's folder. A package must not own files there: its removal would
# delete a language file even if other programs have added their sections to it. An edited file keeps
# its old texts in an upgrade, so harrier-languages takes the new ones from /usr/share/harrier.

set(debian "${PROJECT_SOURCE_DIR}/cmake/debian")
set(doc usr/share/doc/harrier)
file(GLOB languages CONFIGURE_DEPENDS languages/lang_*.ini)

# packaged(COMPONENT ARGUMENT...): installs only as part of that component.
macro(packaged component)
  install(${ARGN} COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()
# packaged_pages(COMPONENT FOLDER): the documents, and what they link to. The tests of the integrations
# stay with the sources.
macro(packaged_pages component folder)
  packaged(${component} FILES README.md CHANGELOG.md ${debian}/copyright DESTINATION ${folder})
  packaged(${component} DIRECTORY docs DESTINATION ${folder})
  install(DIRECTORY integrations DESTINATION ${folder} COMPONENT ${component} EXCLUDE_FROM_ALL
    REGEX "/(to_variables\\.py|check\\.sh)$" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
      GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE
    PATTERN "test*" EXCLUDE
    PATTERN random_values.py EXCLUDE
    PATTERN __pycache__ EXCLUDE
    PATTERN .ansible EXCLUDE)
endmacro()
packaged(package TARGETS ${programs} RUNTIME DESTINATION opt/kestrel)
packaged(package FILES ${languages} DESTINATION etc/harrier)
packaged(package FILES ${languages} DESTINATION usr/share/harrier/languages)
packaged(package PROGRAMS ${debian}/harrier ${debian}/harrier-languages DESTINATION usr/sbin)
packaged(package PROGRAMS ${debian}/harrier-check DESTINATION usr/bin)
packaged(package FILES check/completions/harrier-check merge/completions/harrier-languages
  DESTINATION usr/share/bash-completion/completions)
packaged_pages(package ${doc})
# Augeas looks here for lenses that are not its own, and in the folder dist for its own.
packaged(package FILES integrations/augeas/kestrel.aug DESTINATION usr/share/augeas/lenses)
packaged(debian FILES check/completions/_harrier-check merge/completions/_harrier-languages
  DESTINATION usr/share/zsh/vendor-completions)
packaged(debian FILES ${debian}/lintian-overrides DESTINATION usr/share/lintian/overrides
  RENAME harrier)
packaged(rpm FILES check/completions/_harrier-check merge/completions/_harrier-languages
  DESTINATION usr/share/zsh/site-functions)

packaged(archive TARGETS ${programs} RUNTIME DESTINATION .)
packaged_pages(archive .)
packaged(archive FILES ${languages} cmake/archive/INSTALL.md DESTINATION .)
packaged(archive FILES ${manuals} DESTINATION man/man8)
packaged(archive PROGRAMS ${debian}/harrier DESTINATION sbin)
packaged(archive DIRECTORY check/completions merge/completions DESTINATION .)

# install_compressed(COMPONENT FILE NAME): manual pages and changelogs are compressed.
function(install_compressed component file name)
  install(CODE "
    set(target \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${name}\")
    cmake_path(GET target PARENT_PATH folder)
    file(MAKE_DIRECTORY \"\${folder}\")
    execute_process(COMMAND gzip -9cn \"${file}\" OUTPUT_FILE \"\${target}\"
      COMMAND_ERROR_IS_FATAL ANY)
    file(CHMOD \"\${target}\" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)"
    COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()
foreach(page IN LISTS manuals)
  cmake_path(GET page FILENAME name)
  install_compressed(package "${PROJECT_SOURCE_DIR}/${page}" usr/share/man/man8/${name}.gz)
endforeach()
# The date is that of SOURCE_DATE_EPOCH, where the environment has it.
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
string(TIMESTAMP today "%a %b %d %Y" UTC)
configure_file(${debian}/changelog.in ${PROJECT_BINARY_DIR}/debian/changelog @ONLY)
configure_file(cmake/rpm/changelog.in ${PROJECT_BINARY_DIR}/rpm/changelog @ONLY)
install_compressed(debian "${PROJECT_BINARY_DIR}/debian/changelog" ${doc}/changelog.gz)

set(CPACK_GENERATOR DEB)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/package_kind.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/set_times.cmake)
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_RELOCATABLE OFF)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_PACKAGE_NAME harrier)
set(CPACK_PACKAGE_VENDOR "Harrier developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "terminal editor for the configuration of Kestrel")
set(CPACK_PACKAGE_DESCRIPTION
"Harrier edits the configuration of the Kestrel UPS monitoring service at a
terminal, through numbered menus: UPS devices and groups, schedules, messages,
and what happens when a battery runs low.
.
It works on the files in /opt/kestrel, and writes them only when the operator
agrees at the end of a run. The command harrier-check says what Kestrel and
Harrier do not take from the files as it stands there. The command
harrier-languages puts the texts of the menus into language files that other
programs share.")

# The names of the processors in Debian packages and in RPM packages. The preset for another platform
# says which processor it is for, otherwise it is that of this machine. scripts/package.sh compares it
# with the compiler. The programs are static, so they depend on no library.
set(processors x86_64 aarch64 armv7l i686 riscv64 s390x)
set(debian_names amd64 arm64 armhf i386 riscv64 s390x)
set(rpm_names x86_64 aarch64 armv7hl i686 riscv64 s390x)
list(FIND processors "${CMAKE_SYSTEM_PROCESSOR}" processor)
if(processor GREATER_EQUAL 0)
  list(GET debian_names ${processor} CPACK_DEBIAN_PACKAGE_ARCHITECTURE)
  list(GET rpm_names ${processor} CPACK_RPM_PACKAGE_ARCHITECTURE)
endif()

set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Harrier developers <harrier@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "vim-tiny | vim | nvi")  # a menu opens a script in vi
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(conffiles ${languages})
list(TRANSFORM conffiles REPLACE ".*/" "/etc/harrier/")
list(JOIN conffiles "\n" lines)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/debian/conffiles CONTENT "@lines@\n" @ONLY)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${debian}/postinst ${debian}/prerm ${PROJECT_BINARY_DIR}/debian/conffiles)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_PACKAGE_LICENSE unknown)
set(CPACK_RPM_PACKAGE_GROUP Applications/System)
set(CPACK_RPM_PACKAGE_AUTOREQPROV OFF)
set(CPACK_RPM_PACKAGE_REQUIRES "coreutils, findutils, grep, sed, util-linux")
set(CPACK_RPM_COMPRESSION_TYPE xz)
set(CPACK_RPM_CHANGELOG_FILE ${PROJECT_BINARY_DIR}/rpm/changelog)
set(CPACK_RPM_POST_INSTALL_SCRIPT_FILE ${debian}/postinst)
set(CPACK_RPM_PRE_UNINSTALL_SCRIPT_FILE ${debian}/prerm)
set(CPACK_RPM_USER_FILELIST ${conffiles})
list(TRANSFORM CPACK_RPM_USER_FILELIST PREPEND "%config(noreplace) ")
# rpm would take a folder of the package for its own: give it our owner, and mode, and remove it.
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION /opt /opt/kestrel /usr/sbin /usr/share/man
  /usr/share/man/man8 /usr/share/doc /usr/share/zsh /usr/share/zsh/site-functions
  /usr/share/bash-completion /usr/share/bash-completion/completions
  /usr/share/augeas /usr/share/augeas/lenses)
# The programs are stripped by the tool of their platform, not again by that of this machine. The
# header of the package must not depend on the machine or the time.
set(CPACK_RPM_SPEC_MORE_DEFINE "%define __os_install_post %{nil}
%define _build_id_links none
%define _buildhost localhost
%define use_source_date_epoch_as_buildtime 1
%define clamp_mtime_to_source_date_epoch 1")
include(CPack)
