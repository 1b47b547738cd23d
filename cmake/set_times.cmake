# Run by cpack before it builds a package: gives all files one time, that of SOURCE_DATE_EPOCH.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find "${CPACK_TEMPORARY_INSTALL_DIRECTORY}" -exec
    touch --no-dereference "--date=@$ENV{SOURCE_DATE_EPOCH}" {} + COMMAND_ERROR_IS_FATAL ANY)
endif()
