/// What every primitive satisfies that an operation has left behind.
#pragma once

#include <gtest/gtest.h>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// Whether index arrays have one entry for each triangle and every number addresses an element.
///
/// An array that is missing is not checked, nor is what refers to it; the UV array may have any
/// size.
::testing::AssertionResult IsConsistent(const VraMeshPrimitive& mesh);

inline void ExpectConsistent(const VraMeshPrimitive& mesh) {
    EXPECT_TRUE(IsConsistent(mesh));
}

}  // namespace Vr::test
