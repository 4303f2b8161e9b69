# Run before packages are made: a package without somebody to turn to is not made.
if(NOT CPACK_PACKAGE_CONTACT MATCHES "^[^<>]+ <[^<>@ ]+@[^<>@ ]+>$")
  message(FATAL_ERROR "The packages' maintainer is '${CPACK_PACKAGE_CONTACT}', not 'Name <address>': "
    "configure with -DSHEETVANE_PACKAGE_CONTACT='Name <address>', or set DEBFULLNAME and DEBEMAIL.")
endif()
