# SPDX-License-Identifier: GPL-3.0-or-later
# Run by CPack between the installation into a folder and the packing of it: what Debian has otherwise than an
# installation by hand.
find_program(lister dpkg-shlibdeps)
if(NOT lister)
  message(FATAL_ERROR "Without dpkg-shlibdeps nobody knows what the package depends on: install dpkg-dev")
endif()
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
file(RENAME ${root}/usr/etc ${root}/etc)

file(GLOB programs ${root}/usr/bin/*)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs} COMMAND_ERROR_IS_FATAL ANY)

execute_process(COMMAND date -u -R -d ${CPACK_QUARLIN_RELEASE_DATE} OUTPUT_VARIABLE date
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${root}/usr/share/doc/quarlin/changelog
     "quarlin (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n"
     "  * What is new stands in CHANGELOG.md beside this file.\n\n"
     " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")

file(GLOB packed ${root}/usr/share/man/man1/*.1 ${root}/usr/share/doc/quarlin/changelog)
file(CHMOD ${packed} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
execute_process(COMMAND gzip -9n ${packed} COMMAND_ERROR_IS_FATAL ANY)
