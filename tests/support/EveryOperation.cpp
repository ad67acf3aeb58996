#include "support/EveryOperation.h"

#include <set>
#include <stdexcept>
#include <utility>

#include "mesh/VruDuplicateMap.h"
#include "support/StoreLoad.h"

namespace Vr::test {

namespace {

using Operation = void (*)(std::vector<Mesh>& objects);

template <class Edit>
void ForEach(std::vector<Mesh>& objects, const Edit& edit) {
    for (const Mesh& mesh : objects)
        edit(*mesh);
}

void MergeAll(std::vector<Mesh>& objects) {
    const std::vector<boost::intrusive_ptr<const VraMeshPrimitive>> sources(objects.begin(),
                                                                            objects.end());
    std::vector<std::vector<int>> vertexMaps;
    std::vector<std::vector<int>> normalMaps;
    std::vector<std::vector<int>> colorMaps;
    VraMeshPrimitive::Merge(NewPrimitive(), sources, &vertexMaps, &normalMaps, &colorMaps);
}

void MeasureAll(std::vector<Mesh>& objects) {
    ForEach(objects, [](const VraMeshPrimitive& mesh) {
        ON_BoundingBox box;
        mesh.CalcBoundingBox(box);
        mesh.CalcVolume(ON_3dPoint(1, 2, 3));
        const auto triangles = mesh.GetVertexIndexArray();
        const size_t count = triangles ? triangles->size() : 0;
        for (size_t triangle = 0; triangle < count; ++triangle)
            mesh.GetTriangleArea(triangle);
        mesh.GetTriangleArea(count + 1);  // the count itself is the caller's mistake
    });
}

void DuplicateAll(std::vector<Mesh>& objects) {
    VruDuplicateMap map;
    std::vector<Mesh> duplicates;
    for (const Mesh& mesh : objects) {
        duplicates.push_back(mesh->Duplicate(map));
        mesh->ShallowCopy(NewPrimitive());
    }
}

void TransformAll(std::vector<Mesh>& objects) {
    ON_Xform xf(1);
    xf[0][1] = 2;
    xf[2][3] = 5;
    std::set<void*> done;
    ForEach(objects, [&](VraMeshPrimitive& mesh) { mesh.Transform(xf, done); });
}

// The usual road of a document, on a copy of each object's own.
void CleanAll(std::vector<Mesh>& objects) {
    for (const Mesh& object : objects) {
        const Mesh mesh = object->Duplicate();
        mesh->MergeSameData();
        mesh->RemoveDegenerateMesh();
        mesh->DeleteUnusedVertices();
        mesh->CreateNormalPerVertex();
        std::vector<Mesh> one = {mesh};
        MeasureAll(one);
        MergeAll(one);
        StoredObjects(one);
    }
}

const Operation kOperations[] = {
    [](std::vector<Mesh>& objects) { StoredObjects(objects); },
    MeasureAll,
    DuplicateAll,
    MergeAll,
    TransformAll,
    CleanAll,
    [](std::vector<Mesh>& objects) { VraMeshPrimitive::DeleteUnusedVertices(objects); },
    [](std::vector<Mesh>& objects) { objects.front()->DeleteUnusedVertices(); },
    [](std::vector<Mesh>& objects) { objects.back()->DeleteUnusedVertices(); },
    [](std::vector<Mesh>& objects) { objects.front()->MergeSameData(); },
    [](std::vector<Mesh>& objects) { objects.back()->MergeSameData(); },
    [](std::vector<Mesh>& objects) { objects.front()->RemoveDegenerateMesh(); },
    [](std::vector<Mesh>& objects) { objects.back()->RemoveDegenerateMesh(); },
    [](std::vector<Mesh>& objects) {
        objects.front()->DeleteFacetFaces({0, 2});
    },
    [](std::vector<Mesh>& objects) { objects.back()->DeleteFacetFaces({1}); },
    [](std::vector<Mesh>& objects) {
        ForEach(objects, [](VraMeshPrimitive& mesh) { mesh.CreateNormalPerTriangle(); });
    },
    [](std::vector<Mesh>& objects) {
        ForEach(objects, [](VraMeshPrimitive& mesh) { mesh.CreateNormalPerVertex(); });
    },
    [](std::vector<Mesh>& objects) {
        ForEach(objects, [](VraMeshPrimitive& mesh) { mesh.ReverseFaces(true); });
    },
    [](std::vector<Mesh>& objects) {
        ForEach(objects, [](VraMeshPrimitive& mesh) { mesh.Scale(-2.0); });
    },
    [](std::vector<Mesh>& objects) {
        std::vector<std::pair<size_t, size_t>> edges;
        ForEach(objects, [&](const VraMeshPrimitive& mesh) { mesh.GetFreeEdges(edges); });
    },
    [](std::vector<Mesh>& objects) {
        ForEach(objects, [](VraMeshPrimitive& mesh) {
            mesh.SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(1, 1, 1)));
            mesh.SetDataAsCone(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1.0, 4);
            mesh.SetDataAsCylinder(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1.0, 4);
        });
    },
};

}  // namespace

void RunEveryOperation(const std::function<std::vector<Mesh>()>& load) {
    for (const Operation operation : kOperations) {
        std::vector<Mesh> objects = load();
        if (objects.empty())
            return;
        try {
            operation(objects);
        } catch (const std::out_of_range&) {
            // Joining normals and colours that share one index array: the second step meets the
            // numbers of the first.
        } catch (const boost::bad_get&) {
            // Merging, where a source without vertices lacks an index array of the others' form.
        }
    }
}

}  // namespace Vr::test
