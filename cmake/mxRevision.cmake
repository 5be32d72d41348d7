# The 16-digit source revision id: the first 16 hexadecimal digits of the checked-out commit,
# read once at configure time, or sixteen zeros when the tree is no git checkout.
set(MX3D_REVISION_ID "0000000000000000")
find_package(Git QUIET)
if(GIT_FOUND)
    execute_process(
        COMMAND "${GIT_EXECUTABLE}" rev-parse --verify --quiet HEAD
        WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
        OUTPUT_VARIABLE mx_git_head
        OUTPUT_STRIP_TRAILING_WHITESPACE
        ERROR_QUIET
        RESULT_VARIABLE mx_git_result)
    if(mx_git_result EQUAL 0 AND mx_git_head MATCHES "^[0-9a-f]+$")
        string(SUBSTRING "${mx_git_head}" 0 16 MX3D_REVISION_ID)
    endif()
endif()
message(STATUS "mx3DManipulation revision id: ${MX3D_REVISION_ID}")
