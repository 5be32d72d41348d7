# Helpers shared by every folder's CMakeLists.txt.

# Our own code builds with every warning as an error. Third-party headers come through
# imported targets, whose include directories are system directories, so they stay quiet.
function(mx_target_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
endfunction()

# mx_add_library(<name> <header-folder> SOURCES ... HEADERS ... [PUBLIC_LINK ...] [PRIVATE_LINK ...])
# A shared library of the project with its alias mx3DManipulation::<name>, exported for the
# package config; HEADERS are installed under include/mx3DManipulation/<header-folder>.
function(mx_add_library name folder)
    cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;PUBLIC_LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} SHARED ${ARG_SOURCES} ${ARG_HEADERS})
    add_library(mx3DManipulation::${name} ALIAS ${name})
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        EXPORT_NAME ${name})
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC_LINK} PRIVATE ${ARG_PRIVATE_LINK})
    mx_target_warnings(${name})
    # Faster code with the same results, bit for bit: square roots need not set errno and
    # floating-point operations are taken not to trap, so that loops of them can run several
    # lanes at once; calls inside a library may be inlined, since nobody replaces its
    # functions from outside.
    target_compile_options(${name} PRIVATE -fno-math-errno -fno-trapping-math
        -fno-semantic-interposition)
    install(TARGETS ${name} EXPORT mx3DManipulationTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    mx_install_headers(${folder} ${ARG_HEADERS})
endfunction()

# Installs headers of the current source folder under include/mx3DManipulation/<folder>.
function(mx_install_headers folder)
    if(ARGN)
        install(FILES ${ARGN} DESTINATION "${MX3D_INSTALL_INCLUDEDIR}/${folder}")
    endif()
endfunction()
