# What a desktop installation carries besides the programs, and the Debian package built from
# it with CPack (`make package`). See docs/packaging.md.
set(TESSALY_PACKAGE_NAME tessaly-phone)
set(TESSALY_PACKAGE_VERSION ${PROJECT_VERSION}-1)
set(TESSALY_PACKAGE_MAINTAINER "Tessaly developers <developers@tessaly.org>")
set(TESSALY_APP_ID org.tessaly.Phone)
set(TESSALY_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/${TESSALY_PACKAGE_NAME})
set(generated ${CMAKE_BINARY_DIR}/desktop-data)

# PNG icons for launchers that do not draw SVG, rendered from the one scalable icon.
find_program(TESSALY_RSVG_CONVERT rsvg-convert REQUIRED)
set(icon ${CMAKE_SOURCE_DIR}/data/tessaly-phone.svg)
set(generated_files)
foreach(size 48 64 128 256)
    set(png ${generated}/icons/${size}x${size}/tessaly-phone.png)
    add_custom_command(OUTPUT ${png}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${generated}/icons/${size}x${size}
        COMMAND ${TESSALY_RSVG_CONVERT} --width ${size} --height ${size} --output ${png} ${icon}
        DEPENDS ${icon}
        VERBATIM)
    list(APPEND generated_files ${png})
    install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()

# Manual pages and the Debian changelog, compressed as Debian wants them: gzip -9 without a
# name or a time stamp, so that two builds give the same bytes.
function(tessaly_gzip_file source output)
    get_filename_component(name ${output} NAME)
    configure_file(${source} ${generated}/${name} @ONLY)
    add_custom_command(OUTPUT ${generated}/${name}.gz
        COMMAND gzip -9nkf ${generated}/${name}
        DEPENDS ${generated}/${name}
        VERBATIM)
    set(generated_files ${generated_files} ${generated}/${name}.gz PARENT_SCOPE)
endfunction()
tessaly_gzip_file(data/man/tessaly-phone.1.in tessaly-phone.1)
tessaly_gzip_file(data/man/tessaly-modem-emulator.1 tessaly-modem-emulator.1)
tessaly_gzip_file(data/package/changelog.Debian.in changelog.Debian)
add_custom_target(tessaly-desktop-data ALL DEPENDS ${generated_files})

install(FILES ${generated}/tessaly-phone.1.gz ${generated}/tessaly-modem-emulator.1.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES data/${TESSALY_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES data/package/copyright ${generated}/changelog.Debian.gz DESTINATION ${TESSALY_DOC_DIR})
install(FILES data/package/lintian-overrides
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME ${TESSALY_PACKAGE_NAME})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${TESSALY_PACKAGE_NAME})
set(CPACK_PACKAGE_VENDOR "Tessaly")
set(CPACK_PACKAGE_CONTACT ${TESSALY_PACKAGE_MAINTAINER})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "text messages through a modem, with a phone simulator")
# Lines of at most 80 characters, as dpkg shows them; CPack indents them and marks the
# empty line.
string(JOIN "\n" CPACK_PACKAGE_DESCRIPTION
    "Tessaly Phone brings the text messages of a phone to Linux: an Inbox and an"
    "Outbox, conversations with contacts, templates with placeholders, cell"
    "broadcast channels and the messages kept on the SIM card. Long messages are"
    "sent in several parts, with delivery progress and the network's reasons when"
    "a message is refused; message archives can be imported and exported."
    ""
    "It sends and receives through any modem ModemManager knows. Without one, a"
    "simulator panel beside the phone plays the network, the SIM card and the"
    "radio. The package also holds tessaly-modem-emulator, an emulated GSM modem"
    "for ModemManager's test mode.")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${TESSALY_PACKAGE_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://tessaly.org/phone)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CPACK_PACKAGING_INSTALL_PREFIX}/${TESSALY_PRIVATE_LIBDIR})
# The modem is found through ModemManager on the system bus; without it the simulator works.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS modemmanager)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR}/package)
include(CPack)
