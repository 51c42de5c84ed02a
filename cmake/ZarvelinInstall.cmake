# Where `cmake --install` puts the programs, the sample game system, the documentation, the
# manual pages and the desktop integration, and how `cpack` makes a Debian package of them.
include(GNUInstallDirs)

install(TARGETS zarvelin zarvelin-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The sample game system, found by an installed program beside its bin/ (share/zarvelin/data).
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zarvelin/data
        PATTERN "*.bak" EXCLUDE)

install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/docs/cli.md
              ${PROJECT_SOURCE_DIR}/docs/data-authoring.md ${PROJECT_SOURCE_DIR}/docs/screenshot.png
        DESTINATION ${CMAKE_INSTALL_DOCDIR})

# Manual pages, compressed as Debian keeps them.
find_program(ZV_GZIP gzip REQUIRED)
set(man_pages "")
foreach(page zarvelin.1 zarvelin-cli.1)
  set(out ${CMAKE_BINARY_DIR}/man/${page}.gz)
  add_custom_command(OUTPUT ${out}
                     COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/man
                     COMMAND ${ZV_GZIP} -9nc ${PROJECT_SOURCE_DIR}/packaging/man/${page} > ${out}
                     DEPENDS ${PROJECT_SOURCE_DIR}/packaging/man/${page}
                     VERBATIM)
  list(APPEND man_pages ${out})
endforeach()
add_custom_target(zv_man_pages ALL DEPENDS ${man_pages})
install(FILES ${man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# The desktop's menu entry, the file kinds, the application's description and its icon.
set(linux ${PROJECT_SOURCE_DIR}/packaging/linux)
install(FILES ${linux}/org.zarvelin.Zarvelin.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${linux}/org.zarvelin.Zarvelin.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${linux}/org.zarvelin.Zarvelin.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/icons/zarvelin.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
        RENAME org.zarvelin.Zarvelin.svg)
foreach(size 16 24 32 48 64 128 256)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/icons/zarvelin-${size}.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
          RENAME org.zarvelin.Zarvelin.png)
endforeach()

# The Debian package. Its dependencies are the shared libraries the programs link (the Qt 6
# runtime, not its development packages), found by dpkg-shlibdeps; the menu, file kinds and icon
# caches are brought up to date by the triggers of the packages that own them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zarvelin)
set(CPACK_PACKAGE_VENDOR "The Zarvelin developers")
set(CPACK_PACKAGE_CONTACT "The Zarvelin developers <developers@zarvelin.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "character sheet builder for tabletop role-playing games")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
       "Zarvelin builds characters for tabletop role-playing games. It knows no game of its\n"
       "own: a game system is only data. Templates lay out a sheet's dialogs and lists, data\n"
       "sheets hold the master lists of items with their cost formulas, options and\n"
       "requirements, and an expression language keeps every total up to date. A sample game\n"
       "system and the command-line companion zarvelin-cli are included.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core")
set(CPACK_STRIP_FILES ON)
include(CPack)
