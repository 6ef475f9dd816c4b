# What `cmake --install` gives: libraries, headers, the CMake package KesProgram and a pkg-config file.

include(CMakePackageConfigHelpers)

get_property(libraries GLOBAL PROPERTY KES_LIBRARIES)
get_property(folders GLOBAL PROPERTY KES_HEADER_FOLDERS)

install(TARGETS ${libraries} EXPORT KesProgramTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

list(REMOVE_DUPLICATES folders)
foreach(folder IN LISTS folders)
    if(NOT folder MATCHES "/KesDevice/view$")
        install(DIRECTORY ${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kesprogram
            FILES_MATCHING PATTERN "*.h" PATTERN "*.inl" PATTERN "detail" EXCLUDE PATTERN "late" EXCLUDE)
    endif()
endforeach()

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/KesProgram)
install(EXPORT KesProgramTargets NAMESPACE KesProgram:: DESTINATION ${package})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/KesProgramConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KesProgramConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KesProgramConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KesProgramConfig.cmake ${PROJECT_BINARY_DIR}/KesProgramConfigVersion.cmake
    DESTINATION ${package})

set(KES_PKGCONFIG_LIBS "")
foreach(library IN LISTS libraries)
    string(PREPEND KES_PKGCONFIG_LIBS "-l${library} ")
endforeach()
# From the pkg-config file's folder up to the prefix, whatever the library folder is called.
file(RELATIVE_PATH KES_PKGCONFIG_UP /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/kesprogram.pc.in ${PROJECT_BINARY_DIR}/kesprogram.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kesprogram.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
