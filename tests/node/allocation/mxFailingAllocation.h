// The allocation-failure switch of the allocation test program. mxGizmoNodeAllocationTest.cpp
// replaces the global operator new and operator delete with counting versions; these hooks let
// every file of the program arm them. Everything lives in namespace mx::test.
#pragma once

namespace mx::test {

// Fails the count-th allocation from now (1: the very next one) with std::bad_alloc.
void ArmAllocationFailureAt(long count);
// Stops failing; returns whether the armed failure happened.
bool DisarmAllocationFailure();
// Blocks handed out by operator new and not yet given back.
long LiveAllocations();

} // namespace mx::test
