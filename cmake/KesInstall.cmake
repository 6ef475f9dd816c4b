# What `cmake --install` gives: libraries, headers, the CMake package KesProgram and a pkg-config file.
# Its components are runtime (libraries and their data), development, documentation, and one for each program.

include(CMakePackageConfigHelpers)

get_property(libraries GLOBAL PROPERTY KES_LIBRARIES)
get_property(folders GLOBAL PROPERTY KES_HEADER_FOLDERS)

install(TARGETS ${libraries} EXPORT KesProgramTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT runtime NAMELINK_COMPONENT development)

list(REMOVE_DUPLICATES folders)
foreach(folder IN LISTS folders)
    if(NOT folder MATCHES "/KesDevice/view$")
        install(DIRECTORY ${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kesprogram COMPONENT development
            FILES_MATCHING PATTERN "*.h" PATTERN "*.inl" PATTERN "detail" EXCLUDE PATTERN "late" EXCLUDE)
    endif()
endforeach()

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/KesProgram)
install(EXPORT KesProgramTargets NAMESPACE KesProgram:: DESTINATION ${package} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/KesProgramConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KesProgramConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KesProgramConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KesProgramConfig.cmake ${PROJECT_BINARY_DIR}/KesProgramConfigVersion.cmake
    DESTINATION ${package} COMPONENT development)

set(KES_PKGCONFIG_LIBS "")
foreach(library IN LISTS libraries)
    string(PREPEND KES_PKGCONFIG_LIBS "-l${library} ")
endforeach()
# The pages are linked to each other as they lie.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation
    FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "examples" EXCLUDE)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/examples/pulse DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs/examples
    COMPONENT documentation)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)

# From the pkg-config file's folder up to the prefix, whatever the library folder is called; one outside of the
# prefix has no way there.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(KES_PKGCONFIG_PREFIX ${CMAKE_INSTALL_PREFIX})
else()
    file(RELATIVE_PATH up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
    set(KES_PKGCONFIG_PREFIX \${pcfiledir}/${up})
endif()
foreach(kind LIBDIR INCLUDEDIR)
    set(KES_PKGCONFIG_${kind} \${prefix})
    cmake_path(APPEND KES_PKGCONFIG_${kind} ${CMAKE_INSTALL_${kind}})
endforeach()
configure_file(${CMAKE_CURRENT_LIST_DIR}/kesprogram.pc.in ${PROJECT_BINARY_DIR}/kesprogram.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kesprogram.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
