// Welding of triangle soups, where each position comes six times, and of meshes that are indexed
// already, where only the order is new.

#include "support/BenchMeshes.h"

namespace {

using namespace Vr::bench;

class Welder : public Vr::VraMeshPrimitive {
public:
    using VraMeshPrimitive::OnMergeSameVertex;
};

void Weld(benchmark::State& state, const Case& which) {
    const boost::intrusive_ptr<Welder> mesh(new Welder);
    PrivateMesh(which)->ShallowCopy(mesh);
    Measure(
        state, which.triangleCount, [&] { Restore(which, *mesh); },
        [&] { mesh->OnMergeSameVertex(); });
}

const bool kSoups = Register("WeldSoup", SoupCases(), Weld);
const bool kIndexed = Register("WeldIndexed", IndexedCases(), Weld);

}  // namespace
