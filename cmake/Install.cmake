# What `cmake --install` puts under the prefix, and the Debian package CPack
# makes of it (scripts/package). The layout is the freedesktop one, so that an
# installed copy is found by the application menu, by file managers (a
# double-click on an .ipd or .bbb file starts `orchidlamp FILE`) and by man.
#
# Paths written into installed files (the man pages name the help PDF) follow
# CMAKE_INSTALL_PREFIX, and the package is laid out under the same prefix:
# configure with -DCMAKE_INSTALL_PREFIX=/usr for a package, as scripts/package does.
include(GNUInstallDirs)

set(ORCHIDLAMP_PACKAGING_DIR ${PROJECT_SOURCE_DIR}/packaging)
set(ORCHIDLAMP_STAGING_DIR ${PROJECT_BINARY_DIR}/packaging)
# The window's help message sends the user to "Orchidlamp folder": that is this one.
set(ORCHIDLAMP_DATA_DIR ${CMAKE_INSTALL_DATADIR}/orchidlamp)
# The window's build renders the help PDF and names it in src/ui's ORCHIDLAMP_HELP_PDF.
if(TARGET orchidlamp)
  get_directory_property(ORCHIDLAMP_BUILT_HELP_PDF DIRECTORY ${PROJECT_SOURCE_DIR}/src/ui
                         DEFINITION ORCHIDLAMP_HELP_PDF)
endif()
if(ORCHIDLAMP_BUILT_HELP_PDF)
  get_filename_component(help_pdf_name "${ORCHIDLAMP_BUILT_HELP_PDF}" NAME)
  set(ORCHIDLAMP_INSTALLED_HELP_PDF "${CMAKE_INSTALL_FULL_DATADIR}/orchidlamp/${help_pdf_name}")
endif()
set(ORCHIDLAMP_ICON_SVG ${PROJECT_SOURCE_DIR}/src/ui/icons/splash.svg)  # also the window's icon
set(ORCHIDLAMP_ICON_SIZES 16 24 32 48 64 128 256)

install(TARGETS orchidlamp-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# Always made, help or not: the programs take it for the sign of an installed
# copy, which writes its media into the user's folder rather than into bin/.
install(DIRECTORY DESTINATION ${ORCHIDLAMP_DATA_DIR})

# Manual pages, with the version and the help document's place filled in, and
# compressed reproducibly (-n: no name or time stamp) as Debian keeps them.
set(ORCHIDLAMP_MAN_PAGES orchidlamp-cli)
if(TARGET orchidlamp)
  list(APPEND ORCHIDLAMP_MAN_PAGES orchidlamp)
endif()
set(VERSION ${PROJECT_VERSION})
if(ORCHIDLAMP_INSTALLED_HELP_PDF)
  set(HELP_PDF_SENTENCE ".PP\nThe help document for the window is \\fI${ORCHIDLAMP_INSTALLED_HELP_PDF}\\fR.")
  set(HELP_PDF_ITEM ".TP\n.I ${ORCHIDLAMP_INSTALLED_HELP_PDF}\nThe help document (menu Help, \"Orchidlamp Help\", says where it is).")
endif()
set(orchidlamp_dist_outputs)
foreach(page IN LISTS ORCHIDLAMP_MAN_PAGES)
  configure_file(${ORCHIDLAMP_PACKAGING_DIR}/man/${page}.1 ${ORCHIDLAMP_STAGING_DIR}/man/${page}.1 @ONLY)
  add_custom_command(
    OUTPUT ${ORCHIDLAMP_STAGING_DIR}/man/${page}.1.gz
    COMMAND gzip -9nkf ${ORCHIDLAMP_STAGING_DIR}/man/${page}.1
    DEPENDS ${ORCHIDLAMP_STAGING_DIR}/man/${page}.1
    VERBATIM)
  list(APPEND orchidlamp_dist_outputs ${ORCHIDLAMP_STAGING_DIR}/man/${page}.1.gz)
  install(FILES ${ORCHIDLAMP_STAGING_DIR}/man/${page}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()

if(TARGET orchidlamp)
  install(TARGETS orchidlamp RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

  # Renders the icon in the sizes the icon theme wants, during the build.
  add_executable(orchidlamp-assets ${ORCHIDLAMP_PACKAGING_DIR}/asset_tool.cpp)
  target_link_libraries(orchidlamp-assets PRIVATE Qt6::Gui Qt6::Svg)
  # No display at build time; a sanitizer build must not fail on Qt's caches
  # that live until exit.
  set(run_assets ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0
                 $<TARGET_FILE:orchidlamp-assets>)

  if(ORCHIDLAMP_BUILT_HELP_PDF)
    install(FILES "${ORCHIDLAMP_BUILT_HELP_PDF}" DESTINATION ${ORCHIDLAMP_DATA_DIR})
  endif()

  foreach(size IN LISTS ORCHIDLAMP_ICON_SIZES)
    set(png ${ORCHIDLAMP_STAGING_DIR}/icons/${size}x${size}/orchidlamp.png)
    add_custom_command(
      OUTPUT ${png}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${ORCHIDLAMP_STAGING_DIR}/icons/${size}x${size}
      COMMAND ${run_assets} png ${ORCHIDLAMP_ICON_SVG} ${size} ${png}
      DEPENDS orchidlamp-assets ${ORCHIDLAMP_ICON_SVG}
      VERBATIM)
    list(APPEND orchidlamp_dist_outputs ${png})
    install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
  endforeach()
  install(FILES ${ORCHIDLAMP_ICON_SVG} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
          RENAME orchidlamp.svg)
  foreach(type application-x-orchidlamp-ipd application-x-orchidlamp-bbb)
    install(FILES ${ORCHIDLAMP_ICON_SVG} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/mimetypes
            RENAME ${type}.svg)
  endforeach()

  install(FILES ${ORCHIDLAMP_PACKAGING_DIR}/orchidlamp.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${ORCHIDLAMP_PACKAGING_DIR}/orchidlamp-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
          RENAME orchidlamp.xml)
endif()

add_custom_target(orchidlamp_dist ALL DEPENDS ${orchidlamp_dist_outputs})
if(TARGET orchidlamp_help)
  add_dependencies(orchidlamp_dist orchidlamp_help)
endif()

# The Debian package. Its dependencies come from the shared libraries the two
# programs link (dpkg-shlibdeps). The desktop's caches (menu, MIME types, icons,
# man index) are refreshed by the triggers of the packages that own them, so
# the package needs no maintainer scripts of its own.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orchidlamp)
set(CPACK_PACKAGE_VENDOR Orchidlamp)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Orchidlamp developers <orchidlamp@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "read and rework BlackBerry IPD and BBB backups")
# One string: a CMake list's semicolons would end up in the control file.
string(CONCAT CPACK_PACKAGE_DESCRIPTION
  "Orchidlamp opens BlackBerry device backups (IPD) and desktop backups (BBB,\n"
  "Windows and Mac kinds), lists their databases and records in a tree and\n"
  "decodes SMS messages, contacts, calendars, tasks, memos, call logs, AutoText,\n"
  "browser bookmarks and service books. It exports records as text or CSV,\n"
  "extracts embedded pictures, splits and merges backups, edits service books\n"
  "and converts between IPD and BBB.\n"
  "\n"
  "The package holds the desktop program orchidlamp and the command line\n"
  "orchidlamp-cli.")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "shared-mime-info, desktop-file-utils, hicolor-icon-theme")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "xdg-utils")
include(CPack)
