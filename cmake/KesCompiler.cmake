# Language level, warnings and sanitizers for every target, and the system libraries they call.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# One code model everywhere lets libraries, programs and tests share one precompiled header.
add_compile_options(-fPIC)
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
# GCC 12 takes optimised string concatenations for overflows (its bug 105651); the debug presets warn of them.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-Wno-array-bounds;-Wno-stringop-overflow;-Wno-restrict>")
endif()
add_compile_definitions($<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
# Own functions are found when linking, not looked up through all libraries at every start.
add_link_options(-Wl,--as-needed -Wl,-Bsymbolic-functions)
# With clang the sanitizers' functions are in the programs only; a library finds them when it is loaded.
if(NOT (KES_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES Clang))
    add_link_options(-Wl,-z,defs)
endif()

if(KES_SANITIZE)
    add_compile_options(-fsanitize=${KES_SANITIZE} -fno-omit-frame-pointer -g1 -O1)
    add_link_options(-fsanitize=${KES_SANITIZE})
    # GCC warns falsely of optional values that it has instrumented; the release preset still warns.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    if(KES_SANITIZE MATCHES undefined)
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()

# Programs and libraries find each other relative to themselves. The build tree is laid out as the installed
# one, so that both have the same path: CMake would pad a shorter one with empty entries, each of which has
# the loader search the current directory for every library.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
foreach(kind BIN LIB DATA)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR
            IS_ABSOLUTE "${CMAKE_INSTALL_DATADIR}")
        set(KES_BUILD_${kind}DIR ${PROJECT_BINARY_DIR}/root${CMAKE_INSTALL_FULL_${kind}DIR})
    else()
        set(KES_BUILD_${kind}DIR ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_${kind}DIR})
    endif()
endforeach()
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${KES_BUILD_BINDIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${KES_BUILD_LIBDIR})
file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(CMAKE_INSTALL_RPATH "$ORIGIN/${libraries}")
file(RELATIVE_PATH KES_DATA_FROM_LIBRARY ${CMAKE_INSTALL_FULL_LIBDIR} ${CMAKE_INSTALL_FULL_DATADIR}/kesprogram)

# A library that keeps its interface is not a reason to link again what uses it. A changed interface is a changed
# header, so that the users are compiled and linked again.
set(CMAKE_LINK_DEPENDS_NO_SHARED ON)

# The names of the packages' targets begin with the family's, as they appear beside those of other projects.
find_package(Threads REQUIRED GLOBAL)
find_package(PkgConfig REQUIRED)
pkg_check_modules(KES_GLIBMM REQUIRED IMPORTED_TARGET GLOBAL giomm-2.4)
pkg_check_modules(KES_GTKMM REQUIRED IMPORTED_TARGET GLOBAL gtkmm-3.0)
pkg_check_modules(KES_XLIB REQUIRED IMPORTED_TARGET GLOBAL x11)
pkg_check_modules(KES_WAYLAND REQUIRED IMPORTED_TARGET GLOBAL wayland-client)
pkg_check_modules(KES_LIBXML REQUIRED IMPORTED_TARGET GLOBAL libxml-2.0)
pkg_check_modules(KES_LIBXMLPP REQUIRED IMPORTED_TARGET GLOBAL libxml++-2.6)
pkg_check_modules(KES_LIBARCHIVE REQUIRED IMPORTED_TARGET GLOBAL libarchive)
pkg_check_modules(KES_AVAHI REQUIRED IMPORTED_TARGET GLOBAL avahi-client avahi-glib)
pkg_check_modules(KES_LIBXSLT REQUIRED IMPORTED_TARGET GLOBAL libxslt libexslt)
