# `cpack` in a build folder makes a Debian package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brightsweep)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_PACKAGE_CONTACT "Norvex <brightsweep@norvex.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keep a machine tidy, from the tray and one window")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
  "Brightsweep finds what caches, logs, trash and downloads take up and removes
 what you tick, finds files that exist twice, shows which folders take the
 space, lists the volumes and ejects them, and frees memory.")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
# Dependencies are those of the libraries that the programs are linked with.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "udisks2, pkexec, polkitd, qt6-wayland, qt6-translations-l10n, libglu1-mesa")
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR}/package)
include(CPack)
