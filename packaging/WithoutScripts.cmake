# Run by CPack when a package is there. It has given the package scripts that call ldconfig, because it takes the program's
# modules for libraries that others link; nobody does, and a package without scripts cannot fail when it comes or goes.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(unpacked "${package}.unpacked")
    execute_process(COMMAND dpkg-deb -R "${package}" "${unpacked}" COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE "${unpacked}/DEBIAN/postinst" "${unpacked}/DEBIAN/postrm")
    execute_process(COMMAND dpkg-deb --root-owner-group -Zxz -b "${unpacked}" "${package}"
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE_RECURSE "${unpacked}")
endforeach()
