// Makes a tetrahedron by hand and measures it.

#include <iostream>

#include "mesh/VraMesh.h"

int main() {
    using Vr::VraMesh;
    using Vr::VraMeshPrimitive;

    // A primitive is held by an intrusive pointer from the start; the last one deletes it.
    const boost::intrusive_ptr<VraMesh> mesh(new VraMesh);

    // Arrays are shared: the mesh holds a handle to them and so may anybody else.
    const auto vertices = std::make_shared<VraMeshPrimitive::VertexArray>();
    *vertices = {ON_3dPoint(0, 0, 0), ON_3dPoint(1, 0, 0), ON_3dPoint(0, 1, 0),
                 ON_3dPoint(0, 0, 1)};
    mesh->SetVertexArray(vertices);

    // Three vertex numbers a triangle, counter-clockwise seen from outside.
    const auto triangles = std::make_shared<VraMeshPrimitive::VertexIndexArray>();
    *triangles = {{{0, 2, 1}}, {{0, 1, 3}}, {{1, 2, 3}}, {{2, 0, 3}}};
    mesh->SetVertexIndexArray(triangles);

    double area = 0.0;
    for (size_t triangle = 0; triangle < triangles->size(); ++triangle)
        area += mesh->GetTriangleArea(triangle);
    ON_BoundingBox box;
    mesh->CalcBoundingBox(box);
    std::cout << "area " << area << ", volume " << mesh->CalcVolume(ON_3dPoint(0, 0, 0))
              << ", height " << box.m_max.z - box.m_min.z << '\n';

    // No copy-on-write: what changes in the array changes in every mesh that holds it.
    (*vertices)[3] = ON_3dPoint(0, 0, 2);
    std::cout << "twice as high: volume " << mesh->CalcVolume(ON_3dPoint(0, 0, 0)) << '\n';
}
