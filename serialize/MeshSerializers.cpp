// The body of a mesh in the stream: crease angle, then one shared-array envelope a handle. The layout
// is told byte by byte in docs/stream-format.md.

#include "serialize/MeshSerializers.h"

#include "serialize/VrmArchive.h"
#include "serialize/detail/ArchiveMode.h"
#include "serialize/detail/ElementBridge.h"
#include "serialize/detail/MeshFormat.h"
#include "serialize/detail/RawElements.h"
#include "serialize/detail/SharedArray.h"

namespace Vr {

namespace {

using TriangleIndex = VraMeshPrimitive::TriangleIndex;
using IndexArray = VraMeshPrimitive::IndexArray;

template <class Element>
void WriteContent(CArchive& archive, const std::vector<Element>& elements) {
    detail::WriteRawElements(archive, elements);
}

template <class Element>
void ReadContent(CArchive& archive, std::vector<Element>& elements) {
    detail::ReadRawElements(archive, elements);
}

void WriteContent(CArchive& archive, const IndexArray& indices) {
    archive << indices;
}

void ReadContent(CArchive& archive, IndexArray& indices) {
    archive >> indices;
}

void WriteValue(ON_BinaryArchive& bridge, const ON_Color& color) {
    bridge.WriteColor(color);
}

void WriteValue(ON_BinaryArchive& bridge, const ON_2dPoint& point) {
    bridge.WritePoint(point);
}

void ReadValue(ON_BinaryArchive& bridge, ON_Color& color) {
    bridge.ReadColor(color);
}

void ReadValue(ON_BinaryArchive& bridge, ON_2dPoint& point) {
    bridge.ReadPoint(point);
}

// Colours and UVs have openNURBS's encoding, which is as long as the value.
template <class Value>
void WriteValues(CArchive& archive, const std::vector<Value>& values) {
    archive << static_cast<ULONGLONG>(values.size());
    if (values.empty())
        return;
    detail::ElementBridge bridge(archive);
    for (const Value& value : values)
        WriteValue(bridge, value);
    bridge.HandOver();
}

// Deliberate: values that the stream lacks are not noticed; they come out as `missing`.
template <class Value>
void ReadValues(CArchive& archive, std::vector<Value>& values, const Value& missing) {
    const size_t count = detail::ReadCountAndReserve(archive, values);
    if (count == 0)
        return;
    detail::ElementBridge bridge(archive, count * sizeof(Value));
    while (values.size() < count) {
        Value value = missing;
        ReadValue(bridge, value);
        values.push_back(value);
    }
}

void WriteContent(CArchive& archive, const VraMeshPrimitive::ColorArray& colors) {
    WriteValues(archive, colors);
}

void ReadContent(CArchive& archive, VraMeshPrimitive::ColorArray& colors) {
    ReadValues(archive, colors, ON_Color());
}

void WriteContent(CArchive& archive, const VraMeshPrimitive::UVArray& uvs) {
    WriteValues(archive, uvs);
}

void ReadContent(CArchive& archive, VraMeshPrimitive::UVArray& uvs) {
    ReadValues(archive, uvs, ON_2dPoint(0.0, 0.0));
}

template <class Array>
void WriteHandle(VrmArchive& archive, const std::shared_ptr<Array>& handle) {
    detail::SharedArrayAccess::Write(archive, handle,
                                     [&](const Array& array) { WriteContent(archive, array); });
}

template <class Array>
void ReadHandle(VrmArchive& archive, std::shared_ptr<Array>& handle) {
    detail::SharedArrayAccess::Read(archive, handle,
                                    [&](Array& array) { ReadContent(archive, array); });
}

}  // namespace

void VraMeshPrimitive::Serialize(CArchive& archive) {
    auto& meshArchive = static_cast<VrmArchive&>(archive);
    meshArchive.CommunicateToObserver();
    if (meshArchive.IsStoring()) {
        meshArchive << creaseAngle_;
        WriteHandle(meshArchive, vertexArray_);
        WriteHandle(meshArchive, normalArray_);
        WriteHandle(meshArchive, colorArray_);
        WriteHandle(meshArchive, vertexIndexArray_);
        WriteHandle(meshArchive, normalIndexArray_);
        WriteHandle(meshArchive, colorIndexArray_);
        WriteHandle(meshArchive, uvArray_);
        return;
    }
    meshArchive >> creaseAngle_;
    ReadHandle(meshArchive, vertexArray_);
    ReadHandle(meshArchive, normalArray_);
    ReadHandle(meshArchive, colorArray_);
    ReadHandle(meshArchive, vertexIndexArray_);
    ReadHandle(meshArchive, normalIndexArray_);
    ReadHandle(meshArchive, colorIndexArray_);
    const UINT schema = meshArchive.GetVrmObjectSchema() & ~static_cast<UINT>(VERSIONABLE_SCHEMA);
    if (detail::HasUVEnvelope(schema))
        ReadHandle(meshArchive, uvArray_);
}

CArchive& operator<<(CArchive& archive, const TriangleIndex& triangle) {
    detail::RequireStoring(archive);
    for (const size_t number : triangle.v)
        archive << static_cast<ULONGLONG>(number);
    return archive;
}

CArchive& operator>>(CArchive& archive, TriangleIndex& triangle) {
    detail::RequireLoading(archive);
    for (size_t& number : triangle.v) {
        ULONGLONG stored = 0;
        archive >> stored;
        number = static_cast<size_t>(stored);
    }
    return archive;
}

CArchive& operator<<(CArchive& archive, const IndexArray& indices) {
    detail::RequireStoring(archive);
    if (indices.which() == 1) {
        archive << detail::kPerVertexFlag;
        detail::WriteRawElements(archive, boost::get<IndexArray::PerVertex>(indices.data));
    } else {
        archive << detail::kPerTriangleFlag;
        detail::WriteRawElements(archive, boost::get<IndexArray::PerTriangle>(indices.data));
    }
    return archive;
}

CArchive& operator>>(CArchive& archive, IndexArray& indices) {
    detail::RequireLoading(archive);
    BYTE flag = 0;
    archive >> flag;
    if (flag == detail::kPerVertexFlag) {
        indices.data = IndexArray::PerVertex();
        detail::ReadRawElements(archive, boost::get<IndexArray::PerVertex>(indices.data));
    } else {
        indices.data = IndexArray::PerTriangle();
        detail::ReadRawElements(archive, boost::get<IndexArray::PerTriangle>(indices.data));
    }
    return archive;
}

CArchive& AFXAPI operator>>(CArchive& archive, VraMeshPrimitive*& mesh) {
    mesh = static_cast<VraMeshPrimitive*>(archive.ReadObject(RUNTIME_CLASS(VraMeshPrimitive)));
    return archive;
}

CArchive& AFXAPI operator>>(CArchive& archive, VraMesh*& mesh) {
    mesh = static_cast<VraMesh*>(archive.ReadObject(RUNTIME_CLASS(VraMesh)));
    return archive;
}

}  // namespace Vr
