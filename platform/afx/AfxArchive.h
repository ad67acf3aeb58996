/// `CArchive`: values, raw bytes and objects stored to a file or loaded from it.
#pragma once

#include <cstddef>
#include <cstring>

#include "AfxExport.h"
#include "AfxFile.h"
#include "AfxObject.h"
#include "AfxString.h"
#include "AfxTypes.h"

class CDocument;
struct AfxLoadTable;
struct AfxSchemaTable;
struct AfxStoreTable;

/// A one-way stream over a file, with a buffer, for values and for object graphs.
///
/// Numbers are stored little-endian in the width of their type on Windows, without padding or
/// marks. An object is stored once per archive: its class is described before the first object of
/// it, and later mentions of either are numbers. Classes and objects share one sequence, which
/// starts at 1.
///
/// - Requires: one archive at a time on a file. Objects are neither made nor destroyed between the
///   first and the last write of an archive, because an object is known by its address.
/// - Throws: CArchiveException readOnly for writing while loading and writeOnly for reading while
///   storing, with the file's name; what the file throws passes through.
class VERIDANE_AFX CArchive {
public:
    enum Mode : UINT { store = 0, load = 1, bNoFlushOnDelete = 2, bNoByteSwap = 4 };

    /// Starts at the file's current position. Does not own the file.
    ///
    /// - Shape: a `bufferSize` below 128 becomes 128, and `buffer` is then not used. A used buffer
    /// stays
    ///   the caller's.
    CArchive(CFile* file, UINT mode, int bufferSize = 4096, void* buffer = nullptr);

    /// Closes the archive, unless `bNoFlushOnDelete` is set, and frees it.
    ///
    /// - Deliberate: an error while closing is lost here, as an exception would end the program.
    /// Code
    ///   that stores calls `Close()`, and `Abort()` in its handlers.
    ~CArchive();

    BOOL IsLoading() const { return (m_nMode & load) != 0 ? TRUE : FALSE; }
    BOOL IsStoring() const { return (m_nMode & load) == 0 ? TRUE : FALSE; }
    BOOL IsBufferEmpty() const { return m_lpBufCur == m_lpBufMax ? TRUE : FALSE; }
    /// Returns the file, null once the archive is closed.
    CFile* GetFile() const { return m_pFile; }

    /// Empties the buffer and leaves the file's position at the archive's own.
    ///
    /// Storing, the buffer goes to the file with one `CFile::Write`; loading, the file is moved
    /// back by what was read ahead. The archive goes on from wherever the file then stands.
    /// `CFile::Flush` is not called.
    ///
    /// - Throws: what the file throws; the bytes are then still in the buffer.
    void Flush();

    /// Reads ahead until at least `count` bytes more than the unread ones are in the buffer.
    ///
    /// Asks the file for all the room there is. Unread bytes move to the buffer's start.
    ///
    /// - Throws: CArchiveException endOfFile, with an empty file name, when the file ends before;
    /// the
    ///   bytes that were there stay readable, and until the next `Flush` the file is not asked
    ///   again.
    /// - Requires: unread and wanted bytes together fit the buffer.
    void FillBuffer(UINT count);

    /// Flushes and lets go of the file, which stays open. No further use but destruction.
    void Close();
    /// Lets go of the file, drops unwritten bytes and frees the memory. Never throws.
    void Abort();

    /// @name Raw bytes
    /// Blocks larger than the buffer bypass it in whole multiples of its size.
    /// @{
    /// Reads up to `count` bytes; fewer mean the end of the file.
    UINT Read(void* target, UINT count);
    /// Reads exactly `count` bytes.
    ///
    /// - Throws: CArchiveException endOfFile when there are fewer; what there was has been read.
    void EnsureRead(void* target, UINT count);
    void Write(const void* source, UINT count);
    /// @}

    /// @name Values
    /// - Deliberate: `long`, `unsigned long` and a `wchar_t` of 4 bytes do not compile where their
    /// width
    ///   is not the stored one; write `LONGLONG`, `DWORD` or `WORD`. Pointers to anything but
    ///   objects do not compile either; they would be stored as a `bool`.
    /// @{
    CArchive& operator<<(bool value) { return PutValue(static_cast<BYTE>(value ? 1 : 0)); }
    CArchive& operator<<(char value) { return PutValue(value); }
    CArchive& operator<<(BYTE value) { return PutValue(value); }
    CArchive& operator<<(short value) { return PutValue(value); }
    CArchive& operator<<(WORD value) { return PutValue(value); }
    CArchive& operator<<(int value) { return PutValue(value); }
    CArchive& operator<<(unsigned int value) { return PutValue(value); }
    CArchive& operator<<(LONGLONG value) { return PutValue(value); }
    CArchive& operator<<(ULONGLONG value) { return PutValue(value); }
    CArchive& operator<<(float value) { return PutValue(value); }
    CArchive& operator<<(double value) { return PutValue(value); }

    /// Any nonzero byte reads as true.
    CArchive& operator>>(bool& value) {
        BYTE stored;
        GetValue(stored);
        value = stored != 0;
        return *this;
    }
    CArchive& operator>>(char& value) { return GetValue(value); }
    CArchive& operator>>(BYTE& value) { return GetValue(value); }
    CArchive& operator>>(short& value) { return GetValue(value); }
    CArchive& operator>>(WORD& value) { return GetValue(value); }
    CArchive& operator>>(int& value) { return GetValue(value); }
    CArchive& operator>>(unsigned int& value) { return GetValue(value); }
    CArchive& operator>>(LONGLONG& value) { return GetValue(value); }
    CArchive& operator>>(ULONGLONG& value) { return GetValue(value); }
    CArchive& operator>>(float& value) { return GetValue(value); }
    CArchive& operator>>(double& value) { return GetValue(value); }

#if defined(_WIN32)
    CArchive& operator<<(long value) {
        return PutValue(value);
    }
    CArchive& operator<<(unsigned long value) {
        return PutValue(value);
    }
    CArchive& operator<<(wchar_t value) {
        return PutValue(value);
    }
    CArchive& operator>>(long& value) {
        return GetValue(value);
    }
    CArchive& operator>>(unsigned long& value) {
        return GetValue(value);
    }
    CArchive& operator>>(wchar_t& value) {
        return GetValue(value);
    }
#else
    CArchive& operator<<(long) = delete;
    CArchive& operator<<(unsigned long) = delete;
    CArchive& operator<<(wchar_t) = delete;
    CArchive& operator>>(long&) = delete;
    CArchive& operator>>(unsigned long&) = delete;
    CArchive& operator>>(wchar_t&) = delete;
#endif
    CArchive& operator<<(const void*) = delete;
    /// @}

    /// @name Objects and classes (CArchiveObjects.cpp)
    /// @{
    /// Stores an object, or a number when this archive has it already, or null.
    ///
    /// The object's number is given before its `Serialize` runs, so that cycles end.
    ///
    /// - Throws: CNotSupportedException, before anything is written, when the object's class has no
    ///   schema; CArchiveException badIndex when the archive's numbers are used up.
    void WriteObject(const CObject* object);

    /// Loads an object, which is new to the caller, or finds one loaded before, or gives null.
    ///
    /// - Throws: CNotSupportedException, before anything is read, when `wanted` has no schema.
    ///   CArchiveException endOfFile for a cut stream; badClass for a class that is not registered,
    ///   has a name of 64 bytes or more or one cut short, or is not derived from `wanted`;
    ///   badSchema when the stored schema differs and the class is not versionable; badIndex for a
    ///   number that was not given out or is of the other kind.
    /// - Deliberate: an object whose `Serialize` throws is never deleted, because objects loaded
    /// before
    ///   may point to it already.
    CObject* ReadObject(const CRuntimeClass* wanted);

    /// Stores a class: its description, or its number when this archive has it already.
    void WriteClass(const CRuntimeClass* storedClass);

    /// Loads a class.
    ///
    /// - Result: null when an object's number stands there, which goes to `*objectTag`. The stored
    ///   schema goes to `*schema`, or to `GetObjectSchema` when that is null.
    /// - Throws: as `ReadObject`; badIndex for an object's number when `objectTag` is null.
    CRuntimeClass* ReadClass(const CRuntimeClass* wanted = nullptr, UINT* schema = nullptr,
                             DWORD* objectTag = nullptr);

    /// Stores or loads a class, as the archive's mode says.
    void SerializeClass(const CRuntimeClass* wanted);

    /// Gives an object the next number without storing or loading anything; null only gets the
    /// tables ready. Both sides map the same objects at the same points.
    void MapObject(const CObject* object);

    /// Returns the stored schema of the object being loaded.
    ///
    /// - Deliberate: answers once. The second call for the same object gives 0xFFFFFFFF, as does a
    /// call
    ///   from a `Serialize` that was called directly. The versionable bit is never set.
    UINT GetObjectSchema();
    void SetObjectSchema(UINT schema) {
        m_nObjectSchema = schema;
    }

    /// Kept for the interface; the tables of this layer need no tuning.
    void SetLoadParams(UINT growBy = 1024) {
        m_nGrowSize = growBy;
    }
    void SetStoreParams(UINT hashSize = 2053, UINT blockSize = 128) {
        m_nHashSize = hashSize;
        m_nGrowSize = blockSize;
    }

    /// Throws CArchiveException badIndex when no further number can be given out.
    void CheckCount();
    /// @}

    CDocument* m_pDocument = nullptr;
    /// The file's path when the archive was made.
    CString m_strFileName;
    UINT m_nObjectSchema = 0xFFFFFFFF;

protected:
    /// Makes an archive without a file that stores: it can be destroyed, and nothing else of the
    /// source is taken over.
    CArchive(const CArchive& source);
    /// Takes nothing over.
    void operator=(const CArchive& source);

    UINT m_nMode;
    BOOL m_bUserBuf;
    int m_nBufSize;
    CFile* m_pFile;
    BYTE* m_lpBufCur;
    BYTE* m_lpBufMax;
    BYTE* m_lpBufStart;

    /// The number the next class or object gets; 0 before the tables are set up.
    UINT m_nMapCount = 0;
    union {
        AfxLoadTable* m_pLoadArray;
        AfxStoreTable* m_pStoreMap;
    };
    /// Stored schemas that differ from their class's own, while loading.
    AfxSchemaTable* m_pSchemaMap = nullptr;
    UINT m_nGrowSize = 128;
    UINT m_nHashSize = 2053;

private:
    std::size_t BytesInReach() const {
        return static_cast<std::size_t>(m_lpBufMax - m_lpBufCur);
    }

    template <class Value>
    CArchive& PutValue(Value value) {
        if ((m_nMode & load) != 0 || BytesInReach() < sizeof(Value)) {
            MakeRoom();
        }
        std::memcpy(m_lpBufCur, &value, sizeof(Value));
        m_lpBufCur += sizeof(Value);
        return *this;
    }

    template <class Value>
    CArchive& GetValue(Value& value) {
        if ((m_nMode & load) == 0 || BytesInReach() < sizeof(Value)) {
            FetchAtLeast(sizeof(Value));
        }
        std::memcpy(&value, m_lpBufCur, sizeof(Value));
        m_lpBufCur += sizeof(Value);
        return *this;
    }

    void MakeRoom();
    void FetchAtLeast(std::size_t count);
    void RequireStoring() const;
    void RequireLoading() const;
    void ReadAhead(std::size_t wanted);
    UINT TakeBuffered(BYTE* target, UINT count);
    void SetUpTables();
    void WriteNumber(UINT number, DWORD kindBit);
    CRuntimeClass* ReadNewClass(UINT* schema);
    CRuntimeClass* FindClass(DWORD number, UINT* schema) const;
    CObject* FindObject(DWORD number, const CRuntimeClass* wanted) const;

    bool fileEnded_ = false;
};

inline CArchive& operator<<(CArchive& archive, const CObject* object) {
    archive.WriteObject(object);
    return archive;
}

inline CArchive& operator>>(CArchive& archive, CObject*& object) {
    object = archive.ReadObject(nullptr);
    return archive;
}

inline CArchive& operator>>(CArchive& archive, const CObject*& object) {
    object = archive.ReadObject(nullptr);
    return archive;
}
