# Loki, which comes without a package file of its own. Defines the imported target Loki::Loki.
find_path(Loki_INCLUDE_DIR loki/MultiMethods.h)
find_library(Loki_LIBRARY loki)
mark_as_advanced(Loki_INCLUDE_DIR Loki_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Loki REQUIRED_VARS Loki_LIBRARY Loki_INCLUDE_DIR)

if(Loki_FOUND AND NOT TARGET Loki::Loki)
  add_library(Loki::Loki UNKNOWN IMPORTED)
  set_target_properties(Loki::Loki PROPERTIES
    IMPORTED_LOCATION "${Loki_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Loki_INCLUDE_DIR}")
endif()
