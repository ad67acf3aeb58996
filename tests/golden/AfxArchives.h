/// Archives in the MFC object format, one field a line with its meaning.
///
/// The classes in them: `CTestItem`, schema 3 and versionable, a DWORD; `CTestNode`, schema 1, a BYTE
/// and then a pointer to the next node; `CTestEmpty`, schema 1, nothing. Classes and objects of an
/// archive share one sequence of numbers that starts at 1.
#pragma once

#include <cstddef>
#include <cstdint>

#include "support/ByteScript.h"

namespace Vr::golden {

using test::ByteScript;

/// Two objects of one class, a null, and the first object again.
inline ByteScript TwoObjectsNullRepeat() {
    return ByteScript()
        .NewClass(3, "CTestItem", "class number 1")
        .Dword(0x11223344, "body of a, object number 2")
        .Word(0x8001, "class number 1")
        .Dword(0x55667788, "body of b, object number 3")
        .Word(0x0000, "null")
        .Word(0x0002, "object number 2, a");
}

/// As a program whose `CTestItem` had another schema wrote it.
inline ByteScript TwoObjectsOfSchema(std::uint16_t schema) {
    return ByteScript()
        .NewClass(schema, "CTestItem", "class number 1")
        .Dword(0x11223344, "body of a, object number 2")
        .Word(0x8001, "class number 1")
        .Dword(0x55667788, "body of b, object number 3");
}

/// n1 points to n2 and n2 back to n1; n2 is then written again.
inline ByteScript NestedCycle() {
    return ByteScript()
        .NewClass(1, "CTestNode", "class number 1")
        .OneByte(1, "value of n1, object number 2")
        .Word(0x8001, "class number 1, of the next node")
        .OneByte(2, "value of n2, object number 3")
        .Word(0x0002, "object number 2, n1")
        .Word(0x0003, "object number 3, n2");
}

/// Two classes in one archive: c, e, d, e, c.
inline ByteScript TwoClasses() {
    return ByteScript()
        .NewClass(3, "CTestItem", "class number 1")
        .Dword(7, "body of c, object number 2")
        .NewClass(1, "CTestEmpty", "class number 3, e is object number 4")
        .Word(0x8001, "class number 1")
        .Dword(8, "body of d, object number 5")
        .Word(0x0004, "object number 4, e")
        .Word(0x0002, "object number 2, c");
}

/// An object is mapped as number 1, an item written, and the mapped object written.
inline ByteScript MappedObject() {
    return ByteScript()
        .NewClass(3, "CTestItem", "class number 2")
        .Dword(0x11223344, "body of a, object number 3")
        .Word(0x0001, "object number 1, the mapped one");
}

/// The class written twice by itself, then an object of it.
inline ByteScript ClassAlone() {
    return ByteScript()
        .NewClass(3, "CTestItem", "class number 1")
        .Word(0x8001, "class number 1")
        .Word(0x8001, "class number 1, of a")
        .Dword(0x11223344, "body of a, object number 2");
}

/// Two archives one after the other on one file: each counts from 1 and describes its classes.
inline ByteScript TwoContexts() {
    return ByteScript()
        .NewClass(3, "CTestItem", "class number 1")
        .Dword(0x11223344, "body of a, object number 2")
        .NewClass(3, "CTestItem", "class number 1 of the second archive")
        .Dword(0x55667788, "body of b, object number 2 of the second archive");
}

/// One value through each scalar operator.
inline ByteScript Scalars() {
    return ByteScript()
        .OneByte(1, "bool true")
        .OneByte(0, "bool false")
        .OneByte(0x41, "char 'A'")
        .OneByte(0xAB, "BYTE 0xAB")
        .Word(0xFFFE, "short -2")
        .Word(0xBEEF, "WORD 0xBEEF")
        .Word(0x3042, "UTF-16 unit 0x3042")
        .Dword(0xFFFFFFFD, "int -3")
        .Dword(0xDEADBEEF, "unsigned 0xDEADBEEF")
        .Dword(0xFFFFFFFC, "LONG -4")
        .Dword(0x01020304, "DWORD 0x01020304")
        .Qword(0xFFFFFFFFFFFFFFFB, "LONGLONG -5")
        .Qword(0x1122334455667788, "ULONGLONG 0x1122334455667788")
        // 1.5 = 1.1b * 2^0: exponent 127, fraction 0x400000
        .Dword(0x3FC00000, "float 1.5")
        // -2.25 = -1.001b * 2^1: sign, exponent 1024, fraction 2^49
        .Qword(0xC002000000000000, "double -2.25");
}

/// 32765 objects are mapped, so the class takes 0x7FFE, the last number in the short form.
inline ByteScript LongTagsFromObjects() {
    return ByteScript()
        .NewClass(3, "CTestItem", "class number 0x7FFE")
        .Dword(1, "body of x, object number 0x7FFF")
        .Word(0xFFFE, "class number 0x7FFE in the short form")
        .Dword(2, "body of y, object number 0x8000")
        .Word(0x7FFF, "escape")
        .Dword(0x00007FFF, "object number 0x7FFF, x")
        .Word(0x7FFF, "escape")
        .Dword(0x00008000, "object number 0x8000, y")
        .NewClass(1, "CTestEmpty", "class number 0x8001, e is object number 0x8002")
        .Word(0x7FFF, "escape")
        .Dword(0x80008001, "class number 0x8001, f is object number 0x8003")
        .Word(0x7FFF, "escape")
        .Dword(0x00008002, "object number 0x8002, e")
        .Word(0x0000, "null");
}

/// 32766 objects are mapped, so the class takes 0x7FFF, the first number in the long form.
inline ByteScript LongTagsFromClasses() {
    return ByteScript()
        .NewClass(3, "CTestItem", "class number 0x7FFF")
        .Dword(1, "body of x, object number 0x8000")
        .Word(0x7FFF, "escape")
        .Dword(0x80007FFF, "class number 0x7FFF")
        .Dword(2, "body of y, object number 0x8001");
}

/// 33000 empty objects e[0] to e[32999], numbers 2 to 33001, then references and a second class.
inline ByteScript ManyObjects() {
    constexpr std::size_t kLaterObjects = 32999;
    ByteScript script;
    script.NewClass(1, "CTestEmpty", "class number 1, e[0] is object number 2");
    for (std::size_t object = 0; object < kLaterObjects; ++object) {
        script.Word(0x8001, "class number 1 of a later empty object");
    }
    return script.Word(0x0002, "object number 2, e[0]")
        .Word(0x7FFE, "object number 0x7FFE, e[32764], in the short form")
        .Word(0x7FFF, "escape")
        .Dword(0x00007FFF, "object number 0x7FFF, e[32765]")
        .Word(0x7FFF, "escape")
        .Dword(0x000080E9, "object number 33001, e[32999]")
        .NewClass(3, "CTestItem", "class number 0x80EA")
        .Dword(0xA1, "body of i1, object number 0x80EB")
        .Word(0x7FFF, "escape")
        .Dword(0x800080EA, "class number 0x80EA")
        .Dword(0xA2, "body of i2, object number 0x80EC")
        .Word(0x7FFF, "escape")
        .Dword(0x000080EB, "object number 0x80EB, i1")
        .Word(0x0000, "null");
}

}  // namespace Vr::golden
