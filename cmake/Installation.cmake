# What an installed LibVue is made of, for find_package(LibVue), for pkg-config and as a Debian package.
include(CMakePackageConfigHelpers)

install(TARGETS vue EXPORT LibVueTargets LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/libvue" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    FILES_MATCHING PATTERN "*.h"
    PATTERN "resources" EXCLUDE
    PATTERN "platform/backend/qt" EXCLUDE)
if(IS_DIRECTORY "${PROJECT_SOURCE_DIR}/libvue/resources")
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/libvue/resources" DESTINATION "${CMAKE_INSTALL_DATADIR}/libvue")
endif()

set(dossier_paquet "${CMAKE_INSTALL_LIBDIR}/cmake/LibVue")
install(EXPORT LibVueTargets NAMESPACE LibVue:: DESTINATION "${dossier_paquet}")
configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/LibVueConfig.cmake.in" "${PROJECT_BINARY_DIR}/LibVueConfig.cmake"
    INSTALL_DESTINATION "${dossier_paquet}")
# Before 1.0 a minor version may change interfaces.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/LibVueConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/LibVueConfig.cmake" "${PROJECT_BINARY_DIR}/LibVueConfigVersion.cmake"
    DESTINATION "${dossier_paquet}")

# The .pc file names its prefix relative to its own folder, so that an installed tree may be moved.
set(LIBVUE_PC_PREFIX "\${pcfiledir}")
string(REGEX MATCHALL "[^/]+" etapes "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
foreach(etape IN LISTS etapes)
    string(APPEND LIBVUE_PC_PREFIX "/..")
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/cmake/libvue.pc.in" "${PROJECT_BINARY_DIR}/libvue.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/libvue.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME libvue)
set(CPACK_PACKAGE_VENDOR "LibVue")
set(CPACK_PACKAGE_CONTACT "The LibVue maintainers <libvue@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# The window systems are plug-ins that Qt loads at run time, and text needs fonts: neither shows in the linked libraries.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, fonts-liberation2, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS libcups2) # loaded when somebody prints
include(CPack)
