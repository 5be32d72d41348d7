#!/bin/sh
# Runs every unit test program that needs no display under valgrind's memcheck, each once with
# all its tests. Any memcheck error (invalid read or write, use of uninitialised values, bad
# free) or any definitely lost block fails the run, as does a failing test.
#
#   tests/support/mxMemcheck.sh <folder of the built test programs>
set -u
here=$(cd "$(dirname "$0")" && pwd)
folder=${1:?usage: mxMemcheck.sh <folder of the built test programs>}

programs="mxWm4Test mxSystemTest mxSceneGraphTest mxRenderingTest mxFrameTest mxNodeTest
mxNodeAllocationTest mxControllerTest mxEngineGestureTest mxQtTest mxQtGestureTest
mxViewerUnitTest"

logs=$folder/memcheck
mkdir -p "$logs"
status=0
for program in $programs; do
    if [ ! -x "$folder/$program" ]; then
        echo "missing: $folder/$program" >&2
        status=1
        continue
    fi
    # nouserintercepts: mxNodeAllocationTest replaces operator new itself, and its counting
    # versions must stay in charge; memcheck still sees the malloc and free beneath them.
    if QT_QPA_PLATFORM=offscreen valgrind --tool=memcheck --error-exitcode=99 \
        --leak-check=full --show-leak-kinds=definite --errors-for-leak-kinds=definite \
        --soname-synonyms=somalloc=nouserintercepts --track-origins=yes \
        --suppressions="$here/mxMemcheck.supp" \
        --log-file="$logs/$program.log" "$folder/$program" --gtest_brief=1 \
        >"$logs/$program.out" 2>&1; then
        echo "ok      $program"
    else
        echo "FAILED  $program (exit $?): $logs/$program.log, $logs/$program.out"
        tail -n 40 "$logs/$program.log" "$logs/$program.out"
        status=1
    fi
done
exit $status
