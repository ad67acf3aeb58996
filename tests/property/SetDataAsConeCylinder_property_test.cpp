#include <gtest/gtest.h>

#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"
#include "support/SolidsOracle.h"

namespace {

using namespace Vr::test;

ON_3dPoint RandomPoint(Random& random, bool hasSpecialValues) {
    const double x = RandomCoordinate(random, hasSpecialValues);
    const double y = random.Between(-10, 10);
    return ON_3dPoint(x, y, RandomCoordinate(random, hasSpecialValues));
}

TEST(SolidLaws, ConesAndCylindersAreAsDefined) {
    for (std::size_t round = 0; round < 500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const ON_3dPoint first = RandomPoint(random, false);
        const ON_3dPoint second = random.Chance(5) ? first : RandomPoint(random, false);
        const double radius = random.Chance(10) ? 0.0 : random.Between(-2, 5);
        const std::size_t count = 3 + random.Below(40);
        SolidsOracle cone(first, second, radius, count);
        SolidsOracle cylinder(first, second, radius, count);
        cone.MakeCone();
        cylinder.MakeCylinder();

        const Mesh mesh = NewPrimitive();
        ASSERT_TRUE(mesh->SetDataAsCone(first, second, radius, count));
        ExpectConsistent(*mesh);
        ASSERT_TRUE(AreBitEqual(*mesh, *cone.Mesh()));
        ASSERT_TRUE(mesh->SetDataAsCylinder(first, second, radius, count));
        ExpectConsistent(*mesh);
        ASSERT_TRUE(AreBitEqual(*mesh, *cylinder.Mesh()));
    }
}

// Both caps and the sides close the surface, wherever the caps have their middle.
TEST(SolidLaws, HaveNoFreeEdges) {
    for (std::size_t count = 3; count < 50; ++count) {
        std::vector<std::pair<std::size_t, std::size_t>> edges;
        const Mesh mesh = NewPrimitive();
        mesh->SetDataAsCone(ON_3dPoint(1, 2, 3), ON_3dPoint(4, 5, 7), 2, count);
        mesh->GetFreeEdges(edges);
        mesh->SetDataAsCylinder(ON_3dPoint(1, 2, 3), ON_3dPoint(4, 5, 7), 2, count);
        mesh->GetFreeEdges(edges);
        EXPECT_TRUE(edges.empty());
    }
}

}  // namespace
