# What is installed where, and the Debian package (cpack -G DEB in the build folder).
include(GNUInstallDirs)

set(KELVANE_MAINTAINER "Kelvane Lite developers <developers@kelvane-lite.example>")
set(KELVANE_PACKAGING ${PROJECT_SOURCE_DIR}/packaging)
set(KELVANE_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/kelvane-lite)

install(TARGETS kelvane-lite RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${KELVANE_PACKAGING}/kelvane-lite.desktop
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications)
install(FILES ${KELVANE_PACKAGING}/kelvane-lite-mime.xml
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/mime/packages RENAME kelvane-lite.xml)
install(FILES ${KELVANE_PACKAGING}/lite.kelvane.kelvane_lite.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/metainfo)
install(FILES ${KELVANE_PACKAGING}/icons/kelvane-lite.svg
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps)
foreach(size 16 32 48 128)
  install(FILES ${KELVANE_PACKAGING}/icons/kelvane-lite-${size}.png
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/${size}x${size}/apps
          RENAME kelvane-lite.png)
endforeach()
install(FILES ${KELVANE_PACKAGING}/60-kelvane-lite.rules
              ${KELVANE_PACKAGING}/91-kelvane-lite-braille.rules
        DESTINATION lib/udev/rules.d)
install(FILES ${KELVANE_PACKAGING}/copyright DESTINATION ${KELVANE_DOC_DIR})

# Manual page and change logs are installed packed, as Debian's policy asks, and without a time
# stamp, so that the same sources give the same package.
function(kelvane_install_packed source destination)
  get_filename_component(name ${source} NAME)
  set(packed ${PROJECT_BINARY_DIR}/packed/${name}.gz)
  add_custom_command(OUTPUT ${packed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/packed
    COMMAND gzip -9nc ${source} > ${packed}
    DEPENDS ${source} VERBATIM)
  set_property(GLOBAL APPEND PROPERTY KELVANE_PACKED ${packed})
  install(FILES ${packed} DESTINATION ${destination})
endfunction()

configure_file(${KELVANE_PACKAGING}/kelvane-lite.1 ${PROJECT_BINARY_DIR}/kelvane-lite.1 @ONLY)
configure_file(${KELVANE_PACKAGING}/changelog.Debian.in ${PROJECT_BINARY_DIR}/changelog @ONLY)
kelvane_install_packed(${PROJECT_BINARY_DIR}/kelvane-lite.1 ${CMAKE_INSTALL_MANDIR}/man1)
kelvane_install_packed(${PROJECT_BINARY_DIR}/changelog ${KELVANE_DOC_DIR})
kelvane_install_packed(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${KELVANE_DOC_DIR})
get_property(packed GLOBAL PROPERTY KELVANE_PACKED)
add_custom_target(packed_documents ALL DEPENDS ${packed})

# The manual as HTML, where the converter is installed.
find_program(CMARK_GFM cmark-gfm)
if(CMARK_GFM)
  set(KELVANE_HTML_DIR ${CMAKE_INSTALL_FULL_DATAROOTDIR}/doc/kelvane-lite/html)
  set(html_template ${KELVANE_PACKAGING}/manual.html.in)
  set(html_script ${PROJECT_SOURCE_DIR}/cmake/manual_page.cmake)
  file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/manual/*.md)
  foreach(page ${pages})
    get_filename_component(name ${page} NAME_WE)
    set(html ${PROJECT_BINARY_DIR}/manual/${name}.html)
    add_custom_command(OUTPUT ${html}
      COMMAND ${CMAKE_COMMAND} -DCMARK=${CMARK_GFM} -DPAGE=${page} -DTEMPLATE=${html_template}
              -DOUTPUT=${html} -P ${html_script}
      DEPENDS ${page} ${html_template} ${html_script} VERBATIM)
    list(APPEND html_pages ${html})
  endforeach()
  add_custom_target(html_manual ALL DEPENDS ${html_pages})
  install(FILES ${html_pages} DESTINATION ${KELVANE_DOC_DIR}/html)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/manual/images DESTINATION ${KELVANE_DOC_DIR}/html)
  configure_file(${KELVANE_PACKAGING}/doc-base.in ${PROJECT_BINARY_DIR}/doc-base @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/doc-base
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc-base RENAME kelvane-lite)
else()
  message(STATUS "cmark-gfm is missing: the manual will not be installed as HTML")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelvane-lite)
set(CPACK_PACKAGE_VENDOR "Kelvane Lite developers")
set(CPACK_PACKAGE_CONTACT ${KELVANE_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "send NC programs to CNC machines and receive them")
set(CPACK_PACKAGE_DESCRIPTION
"Kelvane Lite sends NC part programs from a shop-floor computer to CNC machine
tools over RS-232, and saves what a machine punches out. It keeps a list of
machines with their port, tape code (ASCII with even, odd or no parity, EIA
RS-244) and handshake (Xon/Xoff, RTS/CTS), prints listings with bar codes and
renumbers the blocks of a program.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION non-free/comm)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The window system's plug-ins are loaded at run time, which the linker does not see.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${KELVANE_PACKAGING}/postinst)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
