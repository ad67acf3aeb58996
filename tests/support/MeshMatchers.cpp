#include "support/MeshMatchers.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace Vr::test {

namespace {

using ::testing::AssertionFailure;
using ::testing::AssertionResult;
using ::testing::AssertionSuccess;

// An array written down as 64-bit words, with how many of them make an element.
struct Words {
    bool isThere = false;
    std::string form;
    std::size_t wordsPerElement = 1;
    bool isDouble = false;
    std::vector<std::uint64_t> words;
};

template <class Value>
Words WordsOf(const std::vector<Value>& values, bool isDouble) {
    static_assert(sizeof(Value) % sizeof(std::uint64_t) == 0);
    Words words;
    words.isThere = true;
    words.wordsPerElement = sizeof(Value) / sizeof(std::uint64_t);
    words.isDouble = isDouble;
    words.words.resize(values.size() * words.wordsPerElement);
    if (!values.empty())
        std::memcpy(words.words.data(), values.data(), values.size() * sizeof(Value));
    return words;
}

Words Describe(const std::vector<ON_3dPoint>& points) {
    return WordsOf(points, true);
}
Words Describe(const std::vector<ON_3dVector>& vectors) {
    return WordsOf(vectors, true);
}
Words Describe(const std::vector<ON_2dPoint>& uvs) {
    return WordsOf(uvs, true);
}
Words Describe(const std::vector<VraMeshPrimitive::TriangleIndex>& triangles) {
    return WordsOf(triangles, false);
}

Words Describe(const std::vector<ON_Color>& colors) {
    Words words;
    words.isThere = true;
    for (const ON_Color& color : colors)
        words.words.push_back(static_cast<unsigned int>(color));
    return words;
}

Words Describe(const VraMeshPrimitive::IndexArray& indices) {
    using Indices = VraMeshPrimitive::IndexArray;
    Words words = indices.which() == 1
                      ? WordsOf(boost::get<Indices::PerVertex>(indices.data), false)
                      : WordsOf(boost::get<Indices::PerTriangle>(indices.data), false);
    words.form = indices.which() == 1 ? " (per vertex)" : " (per triangle)";
    return words;
}

template <class Handle>
Words DescribeHandle(const Handle& handle) {
    return handle ? Describe(*handle) : Words();
}

Words Describe(const VraMeshPrimitive& mesh, Role role) {
    switch (role) {
        case kVertices:
            return DescribeHandle(mesh.GetVertexArray());
        case kNormals:
            return DescribeHandle(mesh.GetNormalArray());
        case kColors:
            return DescribeHandle(mesh.GetColorArray());
        case kVertexIndices:
            return DescribeHandle(mesh.GetVertexIndexArray());
        case kNormalIndices:
            return DescribeHandle(mesh.GetNormalIndexArray());
        case kColorIndices:
            return DescribeHandle(mesh.GetColorIndexArray());
        case kTextureUVIndices:
            return DescribeHandle(mesh.GetTextureUVIndexArray());
        case kUVs:
            return DescribeHandle(mesh.GetUVArray());
        case kTextureUVs:
            return DescribeHandle(mesh.GetTextureUVArray());
        default:
            throw std::invalid_argument("no role");
    }
}

std::string Shape(const Words& words) {
    if (!words.isThere)
        return "missing";
    return std::to_string(words.words.size() / words.wordsPerElement) + " elements" + words.form;
}

std::string TextOf(std::uint64_t word, bool isDouble) {
    char text[64];
    double value = 0.0;
    std::memcpy(&value, &word, sizeof value);
    if (isDouble)
        std::snprintf(text, sizeof text, "%.17g (%016llx)", value,
                      static_cast<unsigned long long>(word));
    else
        std::snprintf(text, sizeof text, "%llu", static_cast<unsigned long long>(word));
    return text;
}

AssertionResult SameWords(const char* name, const Words& actual, const Words& expected) {
    if (Shape(actual) != Shape(expected))
        return AssertionFailure() << name << ": " << Shape(actual) << " instead of "
                                  << Shape(expected);
    const auto difference =
        std::mismatch(actual.words.begin(), actual.words.end(), expected.words.begin());
    if (difference.first == actual.words.end())
        return AssertionSuccess();
    const auto word = static_cast<std::size_t>(difference.first - actual.words.begin());
    return AssertionFailure() << name << ", element " << word / actual.wordsPerElement
                              << ", component " << word % actual.wordsPerElement << ": "
                              << TextOf(*difference.first, actual.isDouble) << " instead of "
                              << TextOf(*difference.second, actual.isDouble);
}

template <class Array>
AssertionResult SameArrayBits(const Array* actual, const Array* expected) {
    return SameWords("array", DescribeHandle(actual), DescribeHandle(expected));
}

}  // namespace

const char* NameOf(Role role) {
    constexpr const char* kNames[kRoleCount] = {
        "vertex array",           "normal array",       "colour array",
        "vertex index array",     "normal index array", "colour index array",
        "texture-UV index array", "UV array",           "texture-UV array"};
    return kNames[role];
}

ArrayAddresses AddressesOf(const VraMeshPrimitive& mesh) {
    return {mesh.GetVertexArray().get(),         mesh.GetNormalArray().get(),
            mesh.GetColorArray().get(),          mesh.GetVertexIndexArray().get(),
            mesh.GetNormalIndexArray().get(),    mesh.GetColorIndexArray().get(),
            mesh.GetTextureUVIndexArray().get(), mesh.GetUVArray().get(),
            mesh.GetTextureUVArray().get()};
}

AssertionResult HaveSameArrays(const VraMeshPrimitive& actual, const VraMeshPrimitive& expected) {
    const ArrayAddresses actualAddresses = AddressesOf(actual);
    const ArrayAddresses expectedAddresses = AddressesOf(expected);
    for (std::size_t role = 0; role < kRoleCount; ++role)
        if (actualAddresses[role] != expectedAddresses[role])
            return AssertionFailure()
                   << NameOf(static_cast<Role>(role)) << ": " << actualAddresses[role]
                   << " instead of " << expectedAddresses[role];
    return AssertionSuccess();
}

AssertionResult AreBitEqual(const VraMeshPrimitive& actual, const VraMeshPrimitive& expected) {
    if (const AssertionResult crease = SameBits(actual.GetCreaseAngle(), expected.GetCreaseAngle());
        !crease)
        return AssertionFailure() << "crease angle: " << crease.message();
    for (std::size_t role = 0; role < kRoleCount; ++role) {
        const AssertionResult array = AreBitEqual(actual, expected, static_cast<Role>(role));
        if (!array)
            return array;
    }
    return AssertionSuccess();
}

AssertionResult AreBitEqual(const VraMeshPrimitive& actual, const VraMeshPrimitive& expected,
                            Role role) {
    return SameWords(NameOf(role), Describe(actual, role), Describe(expected, role));
}

AssertionResult ShareAlike(const VraMeshPrimitive& actual, const VraMeshPrimitive& expected) {
    const ArrayAddresses actualAddresses = AddressesOf(actual);
    const ArrayAddresses expectedAddresses = AddressesOf(expected);
    for (std::size_t first = 0; first < kRoleCount; ++first)
        for (std::size_t second = first + 1; second < kRoleCount; ++second) {
            const bool isShared =
                actualAddresses[first] && actualAddresses[first] == actualAddresses[second];
            const bool shouldBeShared =
                expectedAddresses[first] && expectedAddresses[first] == expectedAddresses[second];
            if (isShared != shouldBeShared)
                return AssertionFailure() << NameOf(static_cast<Role>(first)) << " and "
                                          << NameOf(static_cast<Role>(second))
                                          << (isShared ? " are one array" : " are two arrays");
        }
    return AssertionSuccess();
}

AssertionResult SameBits(double actual, double expected) {
    std::uint64_t actualBits = 0;
    std::uint64_t expectedBits = 0;
    std::memcpy(&actualBits, &actual, sizeof actual);
    std::memcpy(&expectedBits, &expected, sizeof expected);
    if (actualBits == expectedBits)
        return AssertionSuccess();
    return AssertionFailure() << TextOf(actualBits, true) << " instead of "
                              << TextOf(expectedBits, true);
}

AssertionResult SameBits(const VraMeshPrimitive::VertexArray* actual,
                         const VraMeshPrimitive::VertexArray* expected) {
    return SameArrayBits(actual, expected);
}

AssertionResult SameBits(const VraMeshPrimitive::NormalArray* actual,
                         const VraMeshPrimitive::NormalArray* expected) {
    return SameArrayBits(actual, expected);
}

AssertionResult SameBits(const VraMeshPrimitive::UVArray* actual,
                         const VraMeshPrimitive::UVArray* expected) {
    return SameArrayBits(actual, expected);
}

}  // namespace Vr::test
