/// The polymorphic bases of everything that is stored as a record of its class.
#pragma once

#include "ON_BoundingBox.h"
#include "ON_Line.h"
#include "ON_UUID.h"

class ON_BinaryArchive;
class ON_Object;

/// The name and identifier of a class, by which a stream finds it again.
class VERIDANE_OPENNURBS_API ON_ClassId {
public:
    using CreateFunction = ON_Object* (*)();

    constexpr ON_ClassId(const char* name, const char* baseName, const ON_UUID& id,
                         CreateFunction create) noexcept
        : m_name(name), m_baseName(baseName), m_id(id), m_create(create) {}

    /// Returns the class with an identifier; null when the kernel does not know it.
    static const ON_ClassId* ClassId(const ON_UUID& id) noexcept;

    const char* ClassName() const noexcept { return m_name; }
    /// - Deliberate: "0" for `ON_Object`, which has no base.
    const char* BaseClassName() const noexcept { return m_baseName; }
    ON_UUID Uuid() const noexcept { return m_id; }

    /// Returns a new default object for the caller to delete; null for an abstract class.
    ON_Object* Create() const { return m_create ? m_create() : nullptr; }

private:
    const char* m_name;
    const char* m_baseName;
    ON_UUID m_id;
    CreateFunction m_create;
};

class VERIDANE_OPENNURBS_API ON_Object {
public:
    static const ON_ClassId m_ON_Object_class_id;

    ON_Object() = default;
    ON_Object(const ON_Object&) = default;
    ON_Object& operator=(const ON_Object&) = default;
    virtual ~ON_Object();

    virtual const ON_ClassId* ClassId() const noexcept;
    virtual ON_BOOL32 IsValid() const = 0;

    /// Writes the class's own record, without a chunk around it.
    ///
    /// - Result: whether all of it was written; false for a class without a record.
    virtual ON_BOOL32 Write(ON_BinaryArchive& archive) const;
    /// Reads what `Write` has written.
    ///
    /// - Deliberate: most classes answer a record of an unknown major version with success and
    ///   leave the object as it was.
    virtual ON_BOOL32 Read(ON_BinaryArchive& archive);
};

class VERIDANE_OPENNURBS_API ON_Geometry : public ON_Object {
public:
    static const ON_ClassId m_ON_Geometry_class_id;

    const ON_ClassId* ClassId() const noexcept override;

    virtual int Dimension() const = 0;

    /// Returns a box that holds the geometry; an invalid one where there is none.
    ///
    /// The box of anything curved is that of its control points, which may be larger than needed.
    virtual ON_BoundingBox BoundingBox() const = 0;
};
