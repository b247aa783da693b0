# What is installed, and the packages that ./dev package makes of it. Included last: every target is
# known by now.
include(GNUInstallDirs)

install(TARGETS tarnwell-settings tarnwell-composition RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# Machine code and its resources in one folder that must stay together. The program looks for it in
# this place, relative to its own.
install(DIRECTORY ${PROJECT_BINARY_DIR}/Tarnwell.prefPane
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/tarnwell USE_SOURCE_PERMISSIONS
        PATTERN Tarnwell.so EXCLUDE
        PATTERN tarnwell-fetch-list EXCLUDE)
install(TARGETS tarnwell_pane_bundle
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/tarnwell/Tarnwell.prefPane/Contents/Linux)
install(TARGETS tarnwell-fetch-list
        RUNTIME DESTINATION ${CMAKE_INSTALL_LIBDIR}/tarnwell/Tarnwell.prefPane/Contents/Linux)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/tarnwell-settings.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/tarnwell-settings.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/com.varnit.tarnwell.settings.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

set(CPACK_PACKAGE_NAME tarnwell-settings)
set(CPACK_PACKAGE_VENDOR Varnit)
set(CPACK_PACKAGE_CONTACT "Varnit <support@varnit.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Settings of the Tarnwell menu plug-in")
set(CPACK_PACKAGE_DESCRIPTION
    "Shows the keyboard shortcuts that Tarnwell gave to menu items, application by application,
and restores them; sets the Menu Accelerator hot key, the excluded applications, the menu effects
and the checks for updates.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Not linked but loaded: the reader of the applications' icns icons.
set(CPACK_DEBIAN_PACKAGE_DEPENDS qt6-image-formats-plugins)
# The translations are the toolkit's own texts in other languages than English; the certificates are
# those of the authorities that a web server is trusted by.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "default-dbus-session-bus | dbus-session-bus, xkb-data, qt6-translations-l10n, ca-certificates")
set(CPACK_ARCHIVE_FILE_NAME ${CPACK_PACKAGE_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
include(CPack)
