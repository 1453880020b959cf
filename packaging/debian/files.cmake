# Run by cpack when the components are in place: adds what every Debian package has.
set(packaging ${CPACK_QUILLET_SOURCE_DIR}/packaging/debian)
execute_process(COMMAND ${packaging}/changelog.sh ${CPACK_QUILLET_SOURCE_DIR}/CHANGELOG.md ${CPACK_PACKAGE_CONTACT}
    COMMAND gzip -9nc OUTPUT_FILE ${CPACK_TEMPORARY_DIRECTORY}/changelog.gz COMMAND_ERROR_IS_FATAL ANY)
foreach(component programs runtime development)
    string(TOUPPER ${component} COMPONENT)
    set(documents
        ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share/doc/${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME})
    file(MAKE_DIRECTORY ${documents})
    file(COPY ${packaging}/copyright ${CPACK_TEMPORARY_DIRECTORY}/changelog.gz DESTINATION ${documents}
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endforeach()
