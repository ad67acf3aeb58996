#include "support/ConsistentDocument.h"

namespace Vr::test {

namespace {

// Takes away index arrays whose values are missing: nothing may be addressed that is not there.
void DropUnfounded(VraMeshPrimitive& mesh) {
    if (!mesh.GetVertexArray())
        mesh.SetVertexIndexArray(nullptr);
    if (!mesh.GetNormalArray())
        mesh.SetNormalIndexArray(nullptr);
    if (!mesh.GetColorArray())
        mesh.SetColorIndexArray(nullptr);
}

}  // namespace

std::vector<Mesh> ConsistentDocument(Random& random) {
    RandomMeshOptions options;
    options.hasSpecialValues = true;
    std::vector<Mesh> objects;
    const std::size_t count = 1 + random.Below(6);
    while (objects.size() < count) {
        const Mesh other = objects.empty() ? nullptr : random.OneOf(objects);
        if (random.Chance(10)) {
            objects.push_back(nullptr);
        } else if (other && random.Chance(15)) {
            objects.push_back(other);
        } else if (other && random.Chance(40)) {
            const Mesh sharing = NewPrimitive();
            other->ShallowCopy(sharing);
            if (random.Chance(50))
                sharing->SetUVArray(other->GetModifiableUVArray());
            if (random.Chance(50))
                sharing->SetNormalIndexArray(nullptr);
            objects.push_back(sharing);
        } else {
            options.isVraMesh = random.Chance(50);
            objects.push_back(RandomMesh(random, options));
            DropUnfounded(*objects.back());
        }
    }
    return objects;
}

}  // namespace Vr::test
