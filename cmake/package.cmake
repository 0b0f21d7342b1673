# What `cmake --install` puts on a desktop, and the Debian package that cpack makes of it.
# tools/make_package.sh does the whole of it.
set(documents ${CMAKE_BINARY_DIR}/documents)
add_custom_command(
  OUTPUT ${documents}/velmara.1.gz ${documents}/velmara.bash ${documents}/_velmara
         ${documents}/velmara.fish ${documents}/changelog.Debian.gz
  COMMAND python3 ${PROJECT_SOURCE_DIR}/packaging/write_command_docs.py $<TARGET_FILE:velmara>
          ${documents}
  COMMAND gzip -9nf ${documents}/velmara.1
  COMMAND gzip -9n < ${PROJECT_SOURCE_DIR}/packaging/changelog.Debian >
          ${documents}/changelog.Debian.gz
  DEPENDS velmara ${PROJECT_SOURCE_DIR}/packaging/write_command_docs.py
          ${PROJECT_SOURCE_DIR}/packaging/changelog.Debian)
add_custom_command(
  OUTPUT ${documents}/velmara.cdx.json
  COMMAND python3 ${PROJECT_SOURCE_DIR}/packaging/write_bill_of_materials.py
          $<TARGET_FILE:velmara> ${PROJECT_VERSION} ${documents}/velmara.cdx.json
  DEPENDS velmara ${PROJECT_SOURCE_DIR}/packaging/write_bill_of_materials.py)
set(icons)
foreach(size IN ITEMS 16 32 48 64 128 256 512)
  set(icon ${CMAKE_BINARY_DIR}/icons/${size}x${size}/apps/org.velmara.Velmara.png)
  add_custom_command(
    OUTPUT ${icon}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons/${size}x${size}/apps
    COMMAND rsvg-convert -w ${size} -h ${size} -o ${icon}
            ${PROJECT_SOURCE_DIR}/data/icons/velmara.svg
    DEPENDS ${PROJECT_SOURCE_DIR}/data/icons/velmara.svg)
  list(APPEND icons ${icon})
endforeach()
add_custom_target(package_files DEPENDS ${documents}/velmara.1.gz ${documents}/velmara.cdx.json
                                        ${icons})

set(share ${CMAKE_INSTALL_DATADIR})
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
install(FILES ${packaging}/org.velmara.Velmara.desktop DESTINATION ${share}/applications)
install(FILES ${packaging}/org.velmara.Velmara.metainfo.xml DESTINATION ${share}/metainfo)
install(FILES ${PROJECT_SOURCE_DIR}/data/icons/velmara.svg RENAME org.velmara.Velmara.svg
        DESTINATION ${share}/icons/hicolor/scalable/apps)
install(DIRECTORY ${CMAKE_BINARY_DIR}/icons/ DESTINATION ${share}/icons/hicolor OPTIONAL)
install(FILES ${packaging}/copyright ${documents}/changelog.Debian.gz ${documents}/velmara.cdx.json
        DESTINATION ${share}/doc/velmara OPTIONAL)
install(FILES ${packaging}/lintian-overrides RENAME velmara DESTINATION ${share}/lintian/overrides)
install(FILES ${documents}/velmara.1.gz DESTINATION ${share}/man/man1 OPTIONAL)
install(FILES ${documents}/velmara.bash RENAME velmara
        DESTINATION ${share}/bash-completion/completions OPTIONAL)
install(FILES ${documents}/_velmara DESTINATION ${share}/zsh/vendor-completions OPTIONAL)
install(FILES ${documents}/velmara.fish DESTINATION ${share}/fish/vendor_completions.d OPTIONAL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmara)
set(CPACK_PACKAGE_VENDOR "The Velmara developers")
set(CPACK_PACKAGE_CONTACT "The Velmara developers <maintainers@velmara.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "removes noise from photographs")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Velmara measures how noisy a photo is, chooses the strength by itself or takes
a level of 1 to 10, shows the result beside the photo, and writes a clean file
with the photo's own metadata and colours. The same engine works on the
command line.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded by the program itself, so that dpkg-shlibdeps does not see them.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libvips42 (>= 8.14), libcurl4, libraw20, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n, qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
