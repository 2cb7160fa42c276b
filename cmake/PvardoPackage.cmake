# What an installation from `cmake --install` or the Debian package holds
# beside the two programs and the seeds (which src/ installs into lib/pvardo),
# and how cpack makes the package. scripts/build-package drives it.

option(PVARDO_PACKAGE "Make the manual pages and the package's changelog (needs help2man)" OFF)

set(resources "${PROJECT_SOURCE_DIR}/resources")
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The programs stay in lib/pvardo beside their seeds and are started from the
# PATH through links.
install(CODE [[
    set(bin "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/bin")
    file(MAKE_DIRECTORY "${bin}")
    foreach(program pvardo pvardo-admin)
        message(STATUS "Installing: ${bin}/${program} -> ../lib/pvardo/${program}")
        file(CREATE_LINK "../lib/pvardo/${program}" "${bin}/${program}" SYMBOLIC)
    endforeach()
]])

install(FILES "${resources}/desktop/example.c_seed_6fb89ed2.pvardo.desktop" DESTINATION share/applications)
install(FILES "${resources}/desktop/example.c_seed_6fb89ed2.pvardo.metainfo.xml" DESTINATION share/metainfo)
install(FILES "${resources}/desktop/pvardo.svg" DESTINATION share/icons/hicolor/scalable/apps)
# The templates and label sheets a new installation gets (the programs carry
# their own copy), for the office to look at or to take one back.
install(DIRECTORY "${resources}/forms/" DESTINATION share/pvardo/forms)
install(DIRECTORY "${resources}/labels/" DESTINATION share/pvardo/labels)
install(FILES "${resources}/package/pvardo-admin.bash-completion"
        DESTINATION share/bash-completion/completions RENAME pvardo-admin)
install(FILES "${resources}/package/copyright" DESTINATION share/doc/pvardo)
install(FILES "${resources}/package/examples/pvardo-backup.service"
              "${resources}/package/examples/pvardo-backup.timer"
        DESTINATION share/doc/pvardo/examples)

if(PVARDO_PACKAGE)
    find_program(HELP2MAN help2man REQUIRED)
    find_program(GZIP gzip REQUIRED)
    set(generated "${CMAKE_BINARY_DIR}/package")
    file(MAKE_DIRECTORY "${generated}")
    # The manual pages are made from the programs' own --help, so they say
    # what the installed programs do.
    set(pages "")
    foreach(program pvardo pvardo-admin)
        set(page "${generated}/${program}.1.gz")
        add_custom_command(OUTPUT "${page}"
            COMMAND sh -c "\"$1\" --no-info --section=1 --include=\"$2\" \"$3\" | \"$4\" -9n > \"$5\""
                    sh "${HELP2MAN}" "${resources}/package/${program}.h2m" "$<TARGET_FILE:${program}>"
                    "${GZIP}" "${page}"
            DEPENDS ${program} "${resources}/package/${program}.h2m"
            COMMENT "Making the manual page of ${program}"
            VERBATIM)
        list(APPEND pages "${page}")
    endforeach()
    add_custom_command(OUTPUT "${generated}/changelog.gz"
        COMMAND sh -c "\"$1\" -9n -c \"$2\" > \"$3\"" sh "${GZIP}" "${resources}/package/changelog"
                "${generated}/changelog.gz"
        DEPENDS "${resources}/package/changelog"
        VERBATIM)
    add_custom_target(pvardo_package_documents ALL DEPENDS ${pages} "${generated}/changelog.gz")
    install(FILES ${pages} DESTINATION share/man/man1)
    install(FILES "${generated}/changelog.gz" DESTINATION share/doc/pvardo)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pvardo)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "pvardo maintainers <maintainers@users.noreply.c-seed-6fb89ed2.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "case management for a municipal planning board")
set(CPACK_PACKAGE_DESCRIPTION
"pvardo keeps every project that comes before a town's planning board as a
case, tied to a tax parcel by its Section-Block-Lot: fees, bonds, meetings,
reviews, referrals, wetland permits, maps, the checklist and the surrounding
parcels whose owners must be notified. It also keeps the board's calendar and
a parcel store filled from the state's assessment rolls, and prints letters,
notices, listings and labels from RTF templates that the office edits.
.
A few workstations can share one folder of SQLite database files.
pvardo-admin makes, backs up, checks and repairs an installation without
opening a window.")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The program starts sensible-browser for links when no default browser is known.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "sensible-utils")
# Letters are set in Times New Roman, Arial and Courier New, whose metric
# equivalents come with the Liberation fonts; links and folders open through
# xdg-open.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-liberation2, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cups")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
include(CPack)
