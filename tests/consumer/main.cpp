// A host in ten lines: stores a mesh, loads it again and compares a measure.

#include <afx.h>

#include <cstdio>

#include "serialize/MeshSerializers.h"
#include "serialize/VrmArchive.h"

int main() {
    boost::intrusive_ptr<Vr::VraMesh> mesh(new Vr::VraMesh);
    mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(2, 3, 4)));

    CMemFile file;
    Vr::VrmArchive storing(&file, CArchive::store);
    storing.WriteObject(mesh.get());
    storing.Close();

    file.SeekToBegin();
    Vr::VrmArchive loading(&file, CArchive::load);
    Vr::VraMesh* object = nullptr;
    loading >> object;
    const boost::intrusive_ptr<Vr::VraMesh> loaded(object);
    const double volume = loaded->CalcVolume(ON_3dPoint(0, 0, 0));
    std::printf("volume %g\n", volume);
    return volume == 24.0 ? 0 : 1;
}
