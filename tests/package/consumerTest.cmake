# Script mode: install the build tree into a fresh prefix, then configure, build and run the
# consumer project against it with CMake, and compile it once more with pkg-config's flags.
file(REMOVE_RECURSE "${MX3D_WORK_DIR}")
set(prefix "${MX3D_WORK_DIR}/prefix")

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
    set(run_output "${out}" PARENT_SCOPE)
endfunction()

run("${CMAKE_COMMAND}" --install "${MX3D_BUILD_DIR}" --prefix "${prefix}")
foreach(header mx3DManipulation/mx3DManipulation.h mx3DManipulation/frame/mx3DManipulationVersion.h
        mx3DManipulation/node/mxGizmoNode.h mx3DManipulation/controller/mxGizmoController.h
        mx3DManipulation/scenegraph/mxNode.h
        mx3DManipulation/wm4/Wm4Vector3.h)
    if(NOT EXISTS "${prefix}/include/${header}")
        message(FATAL_ERROR "not installed: include/${header}")
    endif()
endforeach()

run("${CMAKE_COMMAND}" -S "${MX3D_CONSUMER_DIR}" -B "${MX3D_WORK_DIR}/build"
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${MX3D_CXX_COMPILER})
run("${CMAKE_COMMAND}" --build "${MX3D_WORK_DIR}/build")
run("${MX3D_WORK_DIR}/build/consumer")
if(NOT run_output MATCHES "mx3DManipulation 3\\.0\\.0\\.1297 gizmo type mxCore\\.mxGizmoNode")
    message(FATAL_ERROR "unexpected consumer output: ${run_output}")
endif()

# pkg-config
find_program(PKG_CONFIG pkg-config REQUIRED)
set(ENV{PKG_CONFIG_PATH} "${prefix}/lib/pkgconfig")
execute_process(COMMAND "${PKG_CONFIG}" --cflags --libs mx3DManipulation
    RESULT_VARIABLE result OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "pkg-config does not know mx3DManipulation")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
run("${MX3D_CXX_COMPILER}" -std=c++17 "${MX3D_CONSUMER_DIR}/main.cpp" -o "${MX3D_WORK_DIR}/pc-consumer" ${flags})
run("${MX3D_WORK_DIR}/pc-consumer")
if(NOT run_output MATCHES "mx3DManipulation 3\\.0\\.0\\.1297")
    message(FATAL_ERROR "unexpected pkg-config consumer output: ${run_output}")
endif()
