# Functions that make the targets: one shared library per folder, programs, and their precompiled headers.

# kes_precompiled(<target> <header>...): the target whose precompiled header others reuse.
function(kes_precompiled name)
    cmake_parse_arguments(ARG "" "" "HEADERS;LINKS" ${ARGN})
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp "// Carries the precompiled header.\n")
    add_library(${name} STATIC ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} Threads::Threads)
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

# kes_library(<name> FOLDER <dir> [GTK] [RECURSE] LINKS <targets>...)
# A shared library of all sources in FOLDER (below the including root) and in its folder detail, with hidden
# symbols. What lies in detail is private to the library: its headers are not installed.
# Headers are included as <Folder/Header.h>; the include root is the calling list file's directory
# or, with ROOT, the directory given there.
function(kes_library name)
    cmake_parse_arguments(ARG "GTK;RECURSE" "FOLDER;ROOT" "LINKS;PRIVATE_LINKS" ${ARGN})
    if(NOT ARG_ROOT)
        set(ARG_ROOT ${CMAKE_CURRENT_SOURCE_DIR})
    endif()
    set(glob GLOB)
    if(ARG_RECURSE)
        set(glob GLOB_RECURSE)
    endif()
    file(${glob} sources CONFIGURE_DEPENDS ${ARG_ROOT}/${ARG_FOLDER}/*.cpp)
    file(GLOB details CONFIGURE_DEPENDS ${ARG_ROOT}/${ARG_FOLDER}/detail/*.cpp)
    list(APPEND sources ${details})
    list(FILTER sources EXCLUDE REGEX "/late/")
    list(REMOVE_DUPLICATES sources)
    add_library(${name} SHARED ${sources})
    add_library(KesProgram::${name} ALIAS ${name})
    set_target_properties(${name} PROPERTIES
        DEFINE_SYMBOL "" LINKER_LANGUAGE CXX INSTALL_RPATH "$ORIGIN"
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${ARG_ROOT}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kesprogram>)
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} Threads::Threads PRIVATE ${ARG_PRIVATE_LINKS})
    if(ARG_GTK)
        target_precompile_headers(${name} REUSE_FROM KesGtkPrecompiled)
    else()
        target_precompile_headers(${name} REUSE_FROM KesPrecompiled)
    endif()
    set_property(GLOBAL APPEND PROPERTY KES_LIBRARIES ${name})
    set_property(GLOBAL APPEND PROPERTY KES_HEADER_FOLDERS ${ARG_ROOT}/${ARG_FOLDER})
endfunction()

# kes_late_library(<name> FOLDER <dir> LINKS <targets>...): one that its folder's library loads when it is first
# needed (KesCommon/LateLibrary.h); programs and other libraries do not link it.
function(kes_late_library name)
    cmake_parse_arguments(ARG "" "FOLDER" "LINKS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_FOLDER}/*.cpp)
    add_library(${name} SHARED ${sources})
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/.."
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/kesprogram
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS})
    target_precompile_headers(${name} REUSE_FROM KesPrecompiled)
    install(TARGETS ${name} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/kesprogram COMPONENT runtime NAMELINK_SKIP)
    set_property(GLOBAL APPEND PROPERTY KES_LATE_LIBRARIES ${name})
endfunction()

# They are built before the program that may load them.
function(kes_needs_late_libraries name)
    get_property(late GLOBAL PROPERTY KES_LATE_LIBRARIES)
    add_dependencies(${name} ${late})
endfunction()

# kes_program(<name> FOLDER <dir> LINKS <targets>...)
function(kes_program name)
    cmake_parse_arguments(ARG "" "FOLDER" "LINKS" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_FOLDER}/*.cpp)
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS})
    target_precompile_headers(${name} REUSE_FROM KesGtkPrecompiled)
endfunction()
