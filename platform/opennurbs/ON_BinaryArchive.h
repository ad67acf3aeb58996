/// The binary stream of values and objects, over input and output that a derived class supplies.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ON_BoundingBox.h"
#include "ON_Color.h"
#include "ON_RoundShapes.h"
#include "ON_UUID.h"
#include "ON_Xform.h"

/// Writes and reads values in openNURBS's encoding: little-endian, without padding.
///
/// Every function returns whether all bytes went through. An archive without the needed mode bit
/// returns false and moves nothing. On a short read the bytes that were there have been consumed
/// and stand in the front of the destination.
///
/// The virtual functions are binary interface in this order.
class VERIDANE_OPENNURBS_API ON_BinaryArchive {
public:
    explicit ON_BinaryArchive(ON::archive_mode mode) noexcept : m_mode(mode) {}
    virtual ~ON_BinaryArchive();

    virtual size_t CurrentPosition() const = 0;
    virtual bool SeekFromCurrentPosition(int offset) = 0;
    virtual bool SeekFromStart(size_t position) = 0;
    virtual bool AtEnd() const = 0;

protected:
    /// Returns the number of bytes delivered; like `fread`, fewer than asked at the end.
    virtual size_t Read(size_t byteCount, void* destination) = 0;
    virtual size_t Write(size_t byteCount, const void* source) = 0;
    virtual bool Flush() = 0;
    virtual int LoadUserDataApplication(ON_UUID applicationId);

public:
    ON_BinaryArchive(const ON_BinaryArchive&) = delete;
    ON_BinaryArchive& operator=(const ON_BinaryArchive&) = delete;

    bool ReadMode() const noexcept { return (m_mode & ON::read) != 0; }
    bool WriteMode() const noexcept { return (m_mode & ON::write) != 0; }

    bool WritePoint(const ON_2dPoint& point);
    bool ReadPoint(ON_2dPoint& point);
    bool WriteColor(const ON_Color& color);
    /// - Deliberate: the colour is set even on failure, with 0 for the bytes that did not come.
    bool ReadColor(ON_Color& color);
    bool WritePlane(const ON_Plane& plane);
    bool ReadPlane(ON_Plane& plane);
    bool WriteArc(const ON_Arc& arc);
    bool ReadArc(ON_Arc& arc);
    bool WriteXform(const ON_Xform& xform);
    bool ReadXform(ON_Xform& xform);

private:
    ON::archive_mode m_mode;
};
