/// `CObject`, run-time classes and the macros that declare and implement them.
#pragma once

#include <cstddef>

#include "AfxExport.h"
#include "AfxTypes.h"

class CArchive;
class CDumpContext;
class CObject;
struct AFX_CLASSINIT;
struct CRuntimeClass;

/// Marks the schema of a class that reads older stored schemas too. Never stored itself.
#define VERSIONABLE_SCHEMA (0x80000000U)

/// The record of one run-time class: name, size, schema, creation and base class.
///
/// An aggregate whose fields keep this order. A record must be initialised statically (a string
/// literal, constants and function addresses), because registration writes its link field before
/// constructors of the same source file have run.
///
/// - Requires: take a record through `RUNTIME_CLASS` or `GetThisClass()`, never by naming the
/// static
///   member: an executable may hold a copy of another module's data under that name.
struct VERIDANE_AFX CRuntimeClass {
    /// The name stored in archives, ASCII.
    LPCSTR m_lpszClassName;
    /// `sizeof` the class.
    int m_nObjectSize;
    /// The schema number, with `VERSIONABLE_SCHEMA` or without; 0xFFFF for a class that cannot be
    /// stored.
    UINT m_wSchema;
    /// Makes a default object; null when the class cannot be created by name.
    CObject*(PASCAL* m_pfnCreateObject)();
    /// Gives the record of the base class; null or a null result at the root.
    CRuntimeClass*(PASCAL* m_pfnGetBaseClass)();
    /// The next record of the list this one is registered in.
    CRuntimeClass* m_pNextClass;
    /// The object that registered the record, if a macro made it.
    const AFX_CLASSINIT* m_pClassInit = nullptr;

    /// Creates an object of the class.
    ///
    /// - Result: null when the class cannot be created, when memory is short, and when the
    ///   constructor throws a `CException*`, which is deleted. Other exceptions pass.
    CObject* CreateObject();

    /// Returns whether the class is `base` or derives from it.
    ///
    /// - Result: records are compared by address.
    BOOL IsDerivedFrom(const CRuntimeClass* base) const;

    /// Finds a registered class by its exact name.
    ///
    /// - Order: the application's own classes, then the extension modules from the newest to the
    ///   oldest; the first equal name wins.
    /// - Result: null when no registered class has the name. Only classes of `IMPLEMENT_SERIAL` are
    ///   registered.
    static CRuntimeClass* PASCAL FromName(LPCSTR name);
    static CRuntimeClass* PASCAL FromName(LPCWSTR name);

    /// Creates an object of the class that `FromName` finds; null where there is none.
    static CObject* PASCAL CreateObject(LPCSTR name);
    static CObject* PASCAL CreateObject(LPCWSTR name);

    /// Writes schema, name length and name: the description of a class that is new to an archive.
    void Store(CArchive& archive) const;

    /// Reads what `Store` wrote and finds the class.
    ///
    /// - Result: null when the name has 64 bytes or more, is cut short or is not registered;
    /// `schema`
    ///   has then been read.
    /// - Throws: CArchiveException endOfFile when the schema or the length is cut short.
    static CRuntimeClass* PASCAL Load(CArchive& archive, UINT* schema);
};

/// Enters a class record into the list of its module.
///
/// Records of a module that is already initialised join that module; others belong to the
/// application until their module is initialised. Safe on any thread; equal names are not looked
/// for, and a record that is listed already stays where it is.
VERIDANE_AFX void AFXAPI AfxClassInit(CRuntimeClass* newClass);

/// Registers one class for as long as this object lives.
///
/// - Deliberate: the destructor takes the record out again. An unloaded module would otherwise
/// leave
///   a pointer into memory that is no longer mapped.
struct VERIDANE_AFX AFX_CLASSINIT {
    AFX_CLASSINIT(CRuntimeClass* newClass);
    ~AFX_CLASSINIT();
    AFX_CLASSINIT(const AFX_CLASSINIT&) = delete;
    AFX_CLASSINIT& operator=(const AFX_CLASSINIT&) = delete;

private:
    CRuntimeClass* registeredClass_;
};

/// The root of every class with a run-time class.
///
/// Holds nothing but the virtual table pointer. The order of the virtual declarations is binary
/// interface. Must be the first base of a class, and only once.
class VERIDANE_AFX CObject {
public:
    /// Returns the record of the object's exact class.
    virtual CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject();
    /// Stores the object in the archive or loads it, as the archive's mode says. Does nothing here.
    virtual void Serialize(CArchive& archive);
    /// Checks the object in debug builds.
    virtual void AssertValid() const;
    /// Prints the object's class name.
    virtual void Dump(CDumpContext& context) const;

    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    /// Returns whether the object's class is `wanted` or derives from it.
    BOOL IsKindOf(const CRuntimeClass* wanted) const;
    /// Returns whether the object's class can be stored, that is whether its schema is not 0xFFFF.
    BOOL IsSerializable() const;

    /// @name Allocation
    /// - Deliberate: no nothrow form. These declarations hide it, as they do in MFC, so
    ///   `new (std::nothrow) X` does not compile for any class derived from this one.
    /// - Throws: std::bad_alloc when memory is short.
    /// @{
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t size, void* place) noexcept;
    static void* operator new(std::size_t size, LPCSTR file, int line);
    static void operator delete(void* memory) noexcept;
    static void operator delete(void* memory, void* place) noexcept;
    static void operator delete(void* memory, LPCSTR file, int line) noexcept;
    /// @}

    static AFX_DATA const CRuntimeClass classCObject;
    static CRuntimeClass* PASCAL GetThisClass();
    static CRuntimeClass* PASCAL _GetBaseClass();

protected:
    CObject();
};

/// Gives the record of a class declared with one of the macros below.
#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())

#define VERIDANE_AFX_DECLARE_CLASS(class_name, record_type) \
protected:                                                  \
    static CRuntimeClass* PASCAL _GetBaseClass();           \
                                                            \
public:                                                     \
    static AFX_DATA record_type class##class_name;          \
    static CRuntimeClass* PASCAL GetThisClass();            \
    CRuntimeClass* GetRuntimeClass() const override;

#define VERIDANE_AFX_IMPLEMENT_CLASS(class_name, base_class_name, record_type, schema, create, \
                                     registration)                                             \
    CRuntimeClass* PASCAL class_name::_GetBaseClass() {                                        \
        return RUNTIME_CLASS(base_class_name);                                                 \
    }                                                                                          \
    record_type class_name::class##class_name = {                                              \
        #class_name, static_cast<int>(sizeof(class_name)), schema,                             \
        create,      &class_name::_GetBaseClass,           nullptr,                            \
        registration};                                                                         \
    CRuntimeClass* PASCAL class_name::GetThisClass() {                                         \
        return const_cast<CRuntimeClass*>(&class_name::class##class_name);                     \
    }                                                                                          \
    CRuntimeClass* class_name::GetRuntimeClass() const {                                       \
        return RUNTIME_CLASS(class_name);                                                      \
    }

/// @name Declaring and implementing a run-time class
/// DYNAMIC classes can be asked for their class, DYNCREATE classes also created from it, SERIAL
/// classes also found by name and stored. A DECLARE macro ends in a public section. An IMPLEMENT
/// macro is used once, in a source file; the name in archives is its argument as written, so inside
/// a namespace it is the bare class name.
/// @{
#define DECLARE_DYNAMIC(class_name) VERIDANE_AFX_DECLARE_CLASS(class_name, const CRuntimeClass)

#define DECLARE_DYNCREATE(class_name) \
    DECLARE_DYNAMIC(class_name)       \
    static CObject* PASCAL CreateObject();

#define DECLARE_SERIAL(class_name)                        \
    VERIDANE_AFX_DECLARE_CLASS(class_name, CRuntimeClass) \
    static CObject* PASCAL CreateObject();                \
    AFX_API friend CArchive& AFXAPI operator>>(CArchive& archive, class_name*& object);

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                      \
    VERIDANE_AFX_IMPLEMENT_CLASS(class_name, base_class_name, const CRuntimeClass, 0xFFFFU, \
                                 nullptr, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                    \
    CObject* PASCAL class_name::CreateObject() {                                            \
        return new class_name;                                                              \
    }                                                                                       \
    VERIDANE_AFX_IMPLEMENT_CLASS(class_name, base_class_name, const CRuntimeClass, 0xFFFFU, \
                                 &class_name::CreateObject, nullptr)

#define IMPLEMENT_SERIAL(class_name, base_class_name, schema)                              \
    CObject* PASCAL class_name::CreateObject() {                                           \
        return new class_name;                                                             \
    }                                                                                      \
    namespace {                                                                            \
    extern AFX_CLASSINIT classInitOf##class_name;                                          \
    }                                                                                      \
    VERIDANE_AFX_IMPLEMENT_CLASS(class_name, base_class_name, CRuntimeClass, schema,       \
                                 &class_name::CreateObject, &classInitOf##class_name)      \
    namespace {                                                                            \
    AFX_CLASSINIT classInitOf##class_name(RUNTIME_CLASS(class_name));                      \
    }                                                                                      \
    [[maybe_unused]] CArchive& AFXAPI operator>>(CArchive& archive, class_name*& object) { \
        object = static_cast<class_name*>(archive.ReadObject(RUNTIME_CLASS(class_name)));  \
        return archive;                                                                    \
    }
/// @}
