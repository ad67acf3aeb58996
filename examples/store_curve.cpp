// Stores a curve, a surface and a material beside a mesh; loads them where the document is there.
//   store_curve [document]

#include <iostream>

#include "mesh/VraMesh.h"
#include "serialize/MeshSerializers.h"
#include "serialize/ValueSerializers.h"
#include "serialize/VrmArchive.h"

struct Document {
    boost::intrusive_ptr<Vr::VraMesh> mesh{new Vr::VraMesh};
    std::shared_ptr<ON_Curve> curve;
    std::shared_ptr<ON_Surface> surface;
    std::shared_ptr<ON_Material> material = std::make_shared<ON_Material>();
};

// The same line for both directions; the mesh, an object of the archive, has two operators.
CArchive& StoreOrLoadGeometry(CArchive& archive, Document& document) {
    using Vr::operator&;
    return archive & document.curve & document.surface & document.material;
}

void Store(CFile& file) {
    Document document;
    document.mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(1, 1, 1)));
    document.curve = std::make_shared<ON_LineCurve>(ON_3dPoint(0, 0, 0), ON_3dPoint(3, 4, 0));
    document.surface = std::make_shared<ON_PlaneSurface>(ON_Plane());
    document.material->m_diffuse = ON_Color(200, 150, 100);
    Vr::VrmArchive archive(&file, CArchive::store);
    archive << document.mesh.get();
    StoreOrLoadGeometry(archive, document).Close();
    std::cout << "stored " << file.GetLength() << " bytes\n";
}

void Load(CFile& file) {
    Document document;
    Vr::VrmArchive archive(&file, CArchive::load);
    Vr::VraMesh* mesh = nullptr;
    archive >> mesh;
    document.mesh = mesh;
    StoreOrLoadGeometry(archive, document);
    std::cout << "loaded " << document.mesh->GetVertexIndexArray()->size() << " triangles, "
              << document.curve->ClassId()->ClassName() << ", "
              << document.surface->ClassId()->ClassName() << '\n';
}

int main(int argumentCount, char** arguments) try {
    const char* const path = argumentCount > 1 ? arguments[1] : "store_curve.vrm";
    CFile file;
    if (file.Open(path, CFile::modeRead))
        Load(file);
    else if (file.Open(path, CFile::modeCreate | CFile::modeWrite))
        Store(file);
} catch (CException* exception) {
    exception->ReportError();
    exception->Delete();
    return 1;
}
