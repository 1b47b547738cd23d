# Read by cpack for each kind of package.
if(CPACK_GENERATOR STREQUAL "RPM")
  set(CPACK_COMPONENTS_ALL package rpm)
  # In the text of an RPM package an empty line separates paragraphs.
  string(REPLACE "\n.\n" "\n\n" CPACK_RPM_PACKAGE_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
else()
  set(CPACK_COMPONENTS_ALL package debian)
endif()
