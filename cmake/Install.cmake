# What `cmake --install` lays down, and the Debian packages made of it: the runtime libraries, what a host is built with,
# and the programs.

include(CMakePackageConfigHelpers)

set(SHEETVANE_INCLUDE_DIR "${CMAKE_INSTALL_INCLUDEDIR}/sheetvane")
set(SHEETVANE_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/Sheetvane")

# Found beside each other wherever the tree is installed to. One path serves the build tree too: a path that is rewritten
# at installation is padded with empty entries in the build, and an empty entry is the current folder.
set_target_properties(Sheetvane kxtypes PROPERTIES INSTALL_RPATH "$ORIGIN" BUILD_WITH_INSTALL_RPATH ON)
file(RELATIVE_PATH libraries_from_programs
  "/prefix/${CMAKE_INSTALL_BINDIR}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
set_target_properties(tiff2ppf pdf2ppf PROPERTIES
  INSTALL_RPATH "$ORIGIN;$ORIGIN/${libraries_from_programs}" BUILD_WITH_INSTALL_RPATH ON)

install(TARGETS Sheetvane kxtypes EXPORT SheetvaneTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT dev
  INCLUDES DESTINATION "${SHEETVANE_INCLUDE_DIR}")
install(EXPORT SheetvaneTargets NAMESPACE Sheetvane:: DESTINATION "${SHEETVANE_CMAKE_DIR}" COMPONENT dev)

install(FILES interfaces/kxtypes.h DESTINATION "${SHEETVANE_INCLUDE_DIR}" COMPONENT dev)
install(FILES Sheetvane/SheetvaneConverter.h Sheetvane/KX_ECIP3Exception.h
  DESTINATION "${SHEETVANE_INCLUDE_DIR}/Sheetvane" COMPONENT dev)
install(FILES rasteroutput/Export.h rasteroutput/TarnelException.h rasteroutput/Exception.h
  DESTINATION "${SHEETVANE_INCLUDE_DIR}/rasteroutput" COMPONENT dev)

configure_package_config_file(cmake/SheetvaneConfig.cmake.in "${PROJECT_BINARY_DIR}/SheetvaneConfig.cmake"
  INSTALL_DESTINATION "${SHEETVANE_CMAKE_DIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/SheetvaneConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/SheetvaneConfig.cmake" "${PROJECT_BINARY_DIR}/SheetvaneConfigVersion.cmake"
  DESTINATION "${SHEETVANE_CMAKE_DIR}" COMPONENT dev)

# The prefix of a .pc file is where the file stands, so that a tree may be moved.
file(RELATIVE_PATH SHEETVANE_PC_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file(cmake/sheetvane.pc.in "${PROJECT_BINARY_DIR}/sheetvane.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/sheetvane.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)

install(TARGETS tiff2ppf ppfinfo RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tools)
install(FILES docs/man/tiff2ppf.1 docs/man/ppfinfo.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools)
install(FILES completions/tiff2ppf completions/ppfinfo
  DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tools)

# Who answers for the packages is whoever builds them, as Debian's own tools have it: DEBFULLNAME and DEBEMAIL, else the
# identity that git knows.
if(NOT SHEETVANE_PACKAGE_CONTACT)
  set(name "$ENV{DEBFULLNAME}")
  set(address "$ENV{DEBEMAIL}")
  foreach(part name address)
    if("${${part}}" STREQUAL "")
      string(REPLACE address email key "user.${part}")
      execute_process(COMMAND git config "${key}" WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
        OUTPUT_VARIABLE ${part} OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    endif()
  endforeach()
  if(NOT "${address}" STREQUAL "")
    set(SHEETVANE_PACKAGE_CONTACT "${name} <${address}>")
  endif()
endif()
set(SHEETVANE_PACKAGE_CONTACT "${SHEETVANE_PACKAGE_CONTACT}" CACHE STRING
  "Maintainer of the Debian packages, as Name <address>" FORCE)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME sheetvane)
set(CPACK_PACKAGE_VENDOR "Sheetvane")
set(CPACK_PACKAGE_CONTACT "${SHEETVANE_PACKAGE_CONTACT}")
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/CheckPackageContact.cmake")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_COMPONENTS_ALL runtime dev tools)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# What the binaries need, from their dynamic sections; our own libraries are looked up in the build tree.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${SHEETVANE_BIN_DIR}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "libsheetvane${PROJECT_VERSION_MAJOR}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libsheetvane-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME sheetvane-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS ghostscript) # for pdf2ppf
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Ink separations to CIP3 PPF: shared libraries
Turns the ink separations of a printing job, given as TIFF files, into one file in the CIP3 Print Production Format, from
which a press presets its ink keys.")
set(CPACK_DEBIAN_DEV_DESCRIPTION "Ink separations to CIP3 PPF: headers and build files
What a host application is built with.")
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "Ink separations to CIP3 PPF: the programs
tiff2ppf writes a PPF file from TIFF separations, pdf2ppf from a PDF; ppfinfo looks into PPF files, checks them and reports
ink coverage by zone; ppfwatch turns what is dropped into a folder into PPF files, as a service.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/tools/ppfwatch/postinst")
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
include(CPack)
