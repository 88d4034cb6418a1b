// Memory that is refused, in the unit tests of the platform half.
#pragma once

// How many allocations succeed before one fails; none does while it is negative. Stands in
// MorvaneImplTest.cpp along with the operators.
extern int gAllocationsLeft;
