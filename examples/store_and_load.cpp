// Stores two meshes that share their triangles into one archive and loads them again, still sharing.

#include <iostream>

#include "mesh/VraMesh.h"
#include "serialize/MeshSerializers.h"
#include "serialize/VrmArchive.h"

using Mesh = boost::intrusive_ptr<Vr::VraMesh>;

int main() try {
    const Mesh box(new Vr::VraMesh);
    box->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(1, 1, 1)));
    const Mesh twin(new Vr::VraMesh);
    box->ShallowCopy(twin);

    const char* const path = "two_meshes.vrm";
    CFile stored(path, CFile::modeCreate | CFile::modeWrite);
    Vr::VrmArchive storing(&stored, CArchive::store);
    try {
        storing << box.get() << twin.get();
        storing.Close();
    } catch (...) {
        storing.Abort();  // the destructor could not report a second failure
        throw;
    }
    const ULONGLONG storedBytes = stored.GetLength();
    stored.Close();

    CFile loaded(path, CFile::modeRead);
    Vr::VrmArchive loading(&loaded, CArchive::load);
    const auto loadMesh = [&loading] {
        Vr::VraMesh* mesh = nullptr;
        loading >> mesh;
        return Mesh(mesh);  // it came with a count of 0
    };
    const Mesh first = loadMesh();
    const Mesh second = loadMesh();
    loading.Close();

    const bool isShared = first->GetVertexIndexArray() == second->GetVertexIndexArray();
    std::cout << storedBytes << " bytes, " << first->GetVertexIndexArray()->size()
              << " triangles, shared: " << (isShared ? "yes" : "no") << '\n';
    loaded.Close();
    CFile::Remove(path);
    return isShared ? 0 : 1;
} catch (CException* exception) {
    exception->ReportError();
    exception->Delete();
    return 1;
}
