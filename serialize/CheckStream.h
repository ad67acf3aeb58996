#pragma once

#include <afx.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "module/Export.h"

namespace Vr {

namespace detail {
class StreamChecker;
}

/// How much a finding of a check weighs. Everything above `Note` makes a document unsafe to load.
enum class CheckSeverity : int {
    Note = 1,        ///< Loads as the format says, but this library would have stored it otherwise.
    Suspicious = 2,  ///< Loads, but who works on the object may read or write outside an array.
    Invalid = 3,     ///< Loading ends in an exception.
    Unsafe = 4  ///< What is loaded is not of its type, or loading takes what memory there is or
                ///< cannot be judged.
};

/// What a check can find. The numbers are stable: none is given a new meaning or used again.
enum class CheckCode : int {
    // Grammar of objects.
    EndOfStream = 1,   ///< Invalid: the stream ends within a value.
    ClassName = 2,     ///< Invalid: a class name of 64 bytes or more, or cut short.
    UnknownClass = 3,  ///< Unsafe: a class that is no mesh; nothing behind it can be checked.
    WrongClass = 4,    ///< Invalid: a mesh of another class than the wanted one.
    ObjectNumber = 5,  ///< Invalid: the number of no object stored before.
    ClassNumber = 6,   ///< Invalid: the number of no class stored before.
    NewerSchema = 7,   ///< Note: a schema above this library's own.
    MixedSchemas = 8,  ///< Note: not the schema of the first object, which decides for all.
    // Bodies of meshes.
    PresenceByte = 20,      ///< Note: neither 0 nor 1; loads as no array.
    ArrayNumber = 21,       ///< Note: a new array whose number is not the next one.
    ElementType = 22,       ///< Unsafe: the number of an array of other elements.
    FormByte = 23,          ///< Note: neither 0 nor 1; loads as the per-triangle form.
    ElementCount = 24,      ///< Invalid: more elements than the stream has bytes for.
    UnnoticedCount = 25,    ///< Unsafe: the same of colours or UVs, whose absence loading ignores.
    VertexNumber = 26,      ///< Suspicious: a triangle's number addresses no vertex.
    NormalNumber = 27,      ///< Suspicious: a number addresses no normal.
    ColorNumber = 28,       ///< Suspicious: a number addresses no colour.
    NormalListLength = 29,  ///< Suspicious: not one entry of normal numbers a triangle.
    ColorListLength = 30,   ///< Suspicious: not one entry of colour numbers a triangle.
    // Values between the objects.
    StringLength = 40,  ///< Invalid: more characters than the stream has bytes for.
    HostContent = 41,   ///< Invalid: what the host itself found, see `CheckStream::Report`.
    // openNURBS's records between the objects.
    RecordFrame = 50,  ///< Unsafe: chunks that do not fit; where the next value begins is open.
    RecordClass =
        51,  ///< Unsafe: an object that the handle may not hold, as a surface for a curve.
    UnknownRecord = 52,  ///< Note: a class that the geometry kernel does not know; loads as none.
    NestedRecord = 53,   ///< Unsafe: a class that may hold further records, which are not checked.
    MaterialFields =
        54,  ///< Unsafe: fields that do not fit, or a later form; where the next value begins is open.
    // Limits.
    ObjectLimit = 60,  ///< Unsafe: more objects than `CheckLimits` allows; the rest is not checked.
    ArrayLimit = 61    ///< Unsafe: more arrays than `CheckLimits` allows; the rest is not checked.
};

/// Returns the name of a code as it is printed, such as "vertex-number".
[[nodiscard]] VERIDANE_MESH_API const char* NameOf(CheckCode code);
/// Returns "note", "suspicious", "invalid" or "unsafe".
[[nodiscard]] VERIDANE_MESH_API const char* NameOf(CheckSeverity severity);
/// Returns how much findings of this code weigh.
[[nodiscard]] VERIDANE_MESH_API CheckSeverity SeverityOf(CheckCode code);

/// Where a check gives up.
///
/// Nesting needs no limit: no mesh holds an object, and records that may hold others are refused.
struct CheckLimits {
    /// Objects of their own; null and repeated ones are not counted.
    uint64_t objects = uint64_t{1} << 20;
    /// Arrays with content of their own.
    uint64_t arrays = uint64_t{1} << 23;
    /// Findings kept in the report; further ones are only counted.
    size_t findings = 100;
};

/// One thing that a check found.
struct CheckFinding {
    CheckCode code;
    uint64_t offset;   ///< Of the first byte of the value in question, from the start of the file.
    std::string text;  ///< One sentence for people, without a full stop; may change.
};

/// What came out of a check.
struct CheckReport {
    std::vector<CheckFinding>
        findings;               ///< In the order of the stream, as many as the limit allows.
    uint64_t findingCount = 0;  ///< Including those that were not kept.
    uint64_t readCount = 0;     ///< `ReadObject` calls that the stream has an answer for.
    uint64_t objectCount = 0;   ///< Objects of their own, also one that breaks off.
    uint64_t arrayCount = 0;    ///< Arrays with content of their own, also one that breaks off.
    CheckSeverity worst = CheckSeverity::Note;  ///< Of all findings, also those not kept.

    /// Returns whether nothing but notes was found: loading succeeds then, and every operation on a
    /// loaded object stays inside its arrays. docs/reliability.md tells what exactly is promised.
    [[nodiscard]] bool IsSafe() const { return worst == CheckSeverity::Note; }
};

/// Checks a row of stored mesh objects, from the file's position to its end, without loading them.
///
/// Follows the stream as `VrmArchive` and `archive >> mesh` would, creates nothing and trusts
/// nothing: the grammar of objects, class names and schemas, the count of each array against the
/// bytes that remain, the type of the array behind each number, flag bytes, the length of index
/// lists and the range of every number in them.
///
/// - Result: the findings; what is wrong with the content never comes as an exception. Behind a
///   finding that leaves open where the next value begins nothing is checked.
/// - Throws: what the file throws; `std::bad_alloc`. The file's position is put back otherwise.
/// - Complexity: linear. Index arrays are read once, coordinates and colours only counted. Memory is
///   one piece of 256 KiB, 100 bytes an array, 16 bytes an object and the findings.
[[nodiscard]] VERIDANE_MESH_API CheckReport CheckDocument(CFile& file,
                                                          const CheckLimits& limits = {});
/// Checks a row of stored mesh objects in memory, which is read in place.
[[nodiscard]] VERIDANE_MESH_API CheckReport CheckDocument(const void* bytes, size_t byteCount,
                                                          const CheckLimits& limits = {});

/// What `CheckStream::Object` met.
enum class CheckedObject {
    None,   ///< Nothing to go on with: see the report.
    Null,   ///< A null pointer.
    Known,  ///< The number of an object met before.
    New     ///< An object with its body.
};

/// Checks a document of the host's own layout, value by value, as an archive would load it.
///
///     Vr::CheckStream stream(file);
///     DWORD version = 0;
///     if (stream.Value(version) && version != 1)
///         stream.Refuse("format " + std::to_string(version) + " is not known");
///     stream.Object();
///     return stream.Result().IsSafe();
///
/// After a finding that leaves open where the next value begins, every step does nothing and answers
/// false, so that a host may check the answers or only the result.
///
/// - Throws: what the file throws; `std::bad_alloc`.
class VERIDANE_MESH_API CheckStream {
public:
    /// Starts at the file's position. The file is read ahead, so its position means nothing until
    /// the host sets it again.
    explicit CheckStream(CFile& file, const CheckLimits& limits = {});
    /// Reads the bytes in place; they live as long as this object.
    CheckStream(const void* bytes, size_t byteCount, const CheckLimits& limits = {});
    ~CheckStream();
    CheckStream(const CheckStream&) = delete;
    CheckStream& operator=(const CheckStream&) = delete;

    /// Checks what `CArchive::ReadObject(wanted)` would load; null stands for both mesh classes.
    CheckedObject Object(const CRuntimeClass* wanted = nullptr);

    /// Reads a number that was stored with `archive << number`.
    template <class Number>
    bool Value(Number& number) {
        static_assert(std::is_arithmetic_v<Number> && !std::is_same_v<Number, bool>,
                      "numbers only; a bool cannot hold every byte");
        return Bytes(&number, sizeof(Number));
    }
    /// Reads bytes; nothing is written to `target` where the stream has fewer.
    bool Bytes(void* target, size_t byteCount);
    /// Passes over bytes that may hold anything.
    bool Skip(uint64_t byteCount);
    /// Passes over a wide string of serialize/ValueSerializers.h.
    bool WideString();

    /// @name Records of openNURBS's objects, as `operator&` loads them
    /// The record's frame and class are checked; its content is the geometry kernel's to read. Classes that
    /// hold further records, such as polycurves, cannot be checked.
    ///
    /// - Result: `Null` for a record without an object, or of a class that the kernel does not know.
    /// @{
    CheckedObject Curve();
    CheckedObject Surface();
    /// @}

    /// Passes over a material, as `operator&` loads it.
    ///
    /// It has no frame: its fields are walked along, in the form that this library stores.
    bool Material();

    /// Adds a finding (`HostContent`) of the host's own about the value read last.
    void Report(std::string text);
    /// Adds one that leaves nothing more to check.
    void Refuse(std::string text);

    /// Returns whether steps still do something.
    [[nodiscard]] bool CanGoOn() const;
    /// Returns the offset of the next value.
    [[nodiscard]] uint64_t Position() const;
    /// Returns how many bytes lie behind it.
    [[nodiscard]] uint64_t Remaining() const;

    /// Returns what has been found so far.
    [[nodiscard]] const CheckReport& Result() const;

private:
    std::unique_ptr<detail::StreamChecker> checker_;
};

}  // namespace Vr
