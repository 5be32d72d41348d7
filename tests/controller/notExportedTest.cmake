# Fails when the shared library exports one of the controllers' internal picking helpers.
# Called with -DMX3D_LIBRARY=<path of the library> -DMX3D_NM=<nm>.
execute_process(COMMAND "${MX3D_NM}" -D -C --defined-only "${MX3D_LIBRARY}"
    OUTPUT_VARIABLE symbols RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${MX3D_NM} could not read ${MX3D_LIBRARY}")
endif()
if(NOT symbols MATCHES "mxGizmoNode::ComputeGizmoScale")
    message(FATAL_ERROR "${MX3D_LIBRARY} does not look like the library: no ComputeGizmoScale")
endif()
foreach(helper projectToScreen distanceToPolyline normalizeVector closestPointOnLine
        distanceToSegment intersectLineAndPlane isInsideView)
    if(symbols MATCHES "mx::impl::${helper}\\(")
        message(FATAL_ERROR "${MX3D_LIBRARY} exports mx::impl::${helper}")
    endif()
endforeach()
