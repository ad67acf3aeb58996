/// The binary stream of values and objects, over input and output that a derived class supplies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "ON_Array.h"
#include "ON_BoundingBox.h"
#include "ON_Color.h"
#include "ON_Object.h"
#include "ON_RoundShapes.h"
#include "ON_String.h"
#include "ON_UUID.h"
#include "ON_Xform.h"

/// Writes and reads values in openNURBS's encoding: little-endian, without padding.
///
/// Every function returns whether all bytes went through. An archive without the needed mode bit
/// returns false and moves nothing. Constructing an archive costs next to nothing, so that one per
/// value will do.
///
/// - Deliberate: the bytes of a short read have been consumed and stand in the front of the
///   destination. A value of several fields (plane, circle, arc, line, box) stops at the first
///   short field and keeps the ones before it.
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
    /// Called for user data of an unknown application; returns 0.
    virtual int LoadUserDataApplication(ON_UUID applicationId);

    /// Chooses the format. Archives before version 3 store curves and surfaces as NURBS, before
    /// version 4 materials in an older form, and before version 50 chunk lengths in 4 bytes.
    bool SetArchive3dmVersion(int version) noexcept;

public:
    ON_BinaryArchive(const ON_BinaryArchive&) = delete;
    ON_BinaryArchive& operator=(const ON_BinaryArchive&) = delete;

    bool ReadMode() const noexcept { return (m_mode & ON::read) != 0; }
    bool WriteMode() const noexcept { return (m_mode & ON::write) != 0; }

    /// - Result: 0 for a new archive.
    int Archive3dmVersion() const noexcept { return m_3dmVersion; }
    /// The version of the writer; 0, because only complete 3dm files tell it.
    int ArchiveOpenNURBSVersion() const noexcept { return 0; }
    /// Counts the checksums that did not match so far.
    int BadCRCCount() const noexcept { return m_badCrcCount; }

    /// @name Numbers
    /// @{
    bool WriteByte(size_t byteCount, const void* source);
    bool ReadByte(size_t byteCount, void* destination);
    bool WriteBool(bool value);
    bool ReadBool(bool* value);
    bool WriteChar(char value) { return WriteByte(1, &value); }
    bool ReadChar(char* value) { return ReadByte(1, value); }
    bool WriteShort(short value) { return WriteByte(2, &value); }
    bool ReadShort(short* value) { return ReadByte(2, value); }
    bool WriteInt(int value) { return WriteByte(4, &value); }
    bool ReadInt(int* value) { return ReadByte(4, value); }
    bool WriteInt(unsigned int value) { return WriteByte(4, &value); }
    bool ReadInt(unsigned int* value) { return ReadByte(4, value); }
    bool WriteDouble(double value) { return WriteByte(8, &value); }
    bool ReadDouble(double* value) { return ReadByte(8, value); }
    bool WriteDouble(size_t count, const double* values) { return WriteByte(8 * count, values); }
    bool ReadDouble(size_t count, double* values) { return ReadByte(8 * count, values); }
    bool WriteUuid(const ON_UUID& id);
    bool ReadUuid(ON_UUID& id);
    /// @}

    /// @name Points, vectors and transformations: their doubles
    /// @{
    bool WritePoint(const ON_2dPoint& point) { return WriteDouble(2, &point.x); }
    bool ReadPoint(ON_2dPoint& point) { return ReadDouble(2, &point.x); }
    bool WritePoint(const ON_3dPoint& point) { return WriteDouble(3, &point.x); }
    bool ReadPoint(ON_3dPoint& point) { return ReadDouble(3, &point.x); }
    bool WritePoint(const ON_4dPoint& point) { return WriteDouble(4, &point.x); }
    bool ReadPoint(ON_4dPoint& point) { return ReadDouble(4, &point.x); }
    bool WriteVector(const ON_2dVector& vector) { return WriteDouble(2, &vector.x); }
    bool ReadVector(ON_2dVector& vector) { return ReadDouble(2, &vector.x); }
    bool WriteVector(const ON_3dVector& vector) { return WriteDouble(3, &vector.x); }
    bool ReadVector(ON_3dVector& vector) { return ReadDouble(3, &vector.x); }
    bool WriteXform(const ON_Xform& xform) { return WriteDouble(16, &xform.m_xform[0][0]); }
    bool ReadXform(ON_Xform& xform) { return ReadDouble(16, &xform.m_xform[0][0]); }
    /// @}

    /// Writes the packed value, so the bytes are red, green, blue, alpha.
    bool WriteColor(const ON_Color& color) { return WriteInt(static_cast<unsigned int>(color)); }
    /// - Deliberate: the colour is set even on failure, with 0 for the bytes that did not come.
    bool ReadColor(ON_Color& color);

    /// @name Shapes
    /// @{
    bool WriteInterval(const ON_Interval& interval) { return WriteDouble(2, interval.m_t); }
    bool ReadInterval(ON_Interval& interval) { return ReadDouble(2, interval.m_t); }
    bool WriteLine(const ON_Line& line);
    bool ReadLine(ON_Line& line);
    bool WriteBoundingBox(const ON_BoundingBox& box);
    bool ReadBoundingBox(ON_BoundingBox& box);
    bool WritePlaneEquation(const ON_PlaneEquation& equation);
    bool ReadPlaneEquation(ON_PlaneEquation& equation);
    /// Writes frame and equation as they are stored.
    bool WritePlane(const ON_Plane& plane);
    bool ReadPlane(ON_Plane& plane);
    /// Writes plane and radius, then the points at angle 0, pi/2 and pi.
    bool WriteCircle(const ON_Circle& circle);
    /// - Deliberate: the three points are read and dropped.
    bool ReadCircle(ON_Circle& circle);
    bool WriteArc(const ON_Arc& arc);
    bool ReadArc(ON_Arc& arc);
    /// @}

    /// @name Strings and arrays: a count, then the elements
    ///
    /// Counts are claims: memory is taken as the elements arrive, so that a wrong count costs
    /// nothing. A short read leaves the string or array empty.
    /// @{

    /// Writes UTF-16 units; the count includes a terminating 0.
    ///
    /// Where `wchar_t` has 32 bits, each character that is a surrogate is written as U+FFFD, and a run
    /// of units that are surrogates without their partners is read as one U+FFFD.
    ///
    /// - Deliberate: an empty string has the count 0 and no terminator.
    bool WriteString(const ON_wString& text);
    bool ReadString(ON_wString& text);
    bool WriteArray(const ON_SimpleArray<double>& values);
    bool ReadArray(ON_SimpleArray<double>& values);
    bool WriteArray(const ON_SimpleArray<ON_3dPoint>& points);
    bool ReadArray(ON_SimpleArray<ON_3dPoint>& points);
    /// @}

    /// Writes the version of a record as one byte, `major` in the upper half.
    bool Write3dmChunkVersion(int major, int minor);
    bool Read3dmChunkVersion(int* major, int* minor);

    /// @name Chunks
    ///
    /// Every chunk that has begun must end, also after a failure in it.
    /// @{

    /// Begins a chunk; bit 31 of the typecode makes it a short one, which has a value and no body.
    ///
    /// - Requires: a target that can be overwritten, because the length is filled in at the end.
    bool BeginWrite3dmChunk(unsigned int typecode, int value);
    /// Begins a chunk whose body starts with a version.
    bool BeginWrite3dmChunk(unsigned int typecode, int major, int minor);
    /// Ends the innermost chunk; the target is flushed with the outermost one.
    bool EndWrite3dmChunk();

    /// Reads a header.
    ///
    /// - Result: false, and no chunk begun, for a short stream, chunks nested more than 256 deep and
    ///   lengths beyond 2^40.
    bool BeginRead3dmChunk(unsigned int* typecode, std::int64_t* lengthOrValue);
    /// Reads the header of a chunk that must have a typecode and whose body starts with a version.
    bool BeginRead3dmChunk(unsigned int expectedTypecode, int* major, int* minor);
    /// Moves to the end of the innermost chunk, forward or backward.
    ///
    /// - Deliberate: a wrong checksum is only counted, and it is only looked at when exactly its four
    ///   bytes are left.
    /// - Result: false when the checksum or the end cannot be reached, and from the 17th step back
    ///   inside one outermost chunk on.
    bool EndRead3dmChunk();
    /// @}

    /// @name Objects
    /// @{

    /// Writes a record of the object's class; a null pointer is written as a null record.
    ///
    /// - Deliberate: in an archive before version 3, and so in a new one, a curve or surface that has
    ///   a NURBS form is written as that, and its class is lost.
    bool WriteObject(const ON_Object* object);
    bool WriteObject(const ON_Object& object);

    /// Reads a record and hands out a new object of its class for the caller to delete.
    ///
    /// The position is at the record's declared end afterwards, whatever happened, once the header
    /// was there.
    ///
    /// - Result: 1 for success, also with a null record; 3 for an unknown class; 0 for a damaged or
    ///   short record.
    /// - Deliberate: wrong checksums are tolerated, and 0 does not mean that there is no object: a
    ///   record that is damaged behind the class's data hands it out.
    int ReadObject(ON_Object** object);
    /// @}

private:
    struct Chunk {
        unsigned int typecode;
        std::uint64_t length;
        std::uint64_t start;
        std::uint32_t checksum;
        bool hasChecksum;
    };

    /// @name Bytes outside every checksum
    /// @{
    bool WriteRaw(size_t byteCount, const void* source);
    bool ReadRaw(size_t byteCount, void* destination);
    bool WriteChunkLength(std::uint64_t length);
    bool ReadChunkLength(std::uint64_t& length);
    /// @}

    void UpdateChecksum(size_t byteCount, const void* bytes) noexcept;
    bool WriteLengthOf(const Chunk& chunk);
    bool SeekForward(std::uint64_t distance);
    bool SeekBackward(std::uint64_t distance);
    bool StepBack(std::uint64_t position);

    bool WriteRecord(const ON_Object& object);
    bool WriteClassId(const ON_UUID& id);
    int ReadRecord(std::unique_ptr<ON_Object>& object);
    bool ReadClassId(ON_UUID& id);
    bool ReadToObjectEnd();

    ON::archive_mode m_mode;
    int m_3dmVersion = 0;
    int m_badCrcCount = 0;
    int m_stepsBack = 0;  // in the outermost chunk
    std::vector<Chunk> m_chunks;
};
