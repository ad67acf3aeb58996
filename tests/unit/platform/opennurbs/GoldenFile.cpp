// Parsing of the recorded results. Decimals are the shortest that read back to the same bits, so
// strtod restores every value exactly.
#include "unit/platform/opennurbs/GoldenFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kerneltest {

std::string GoldenLine::Word() {
    if (IsAtEnd()) {
        throw std::runtime_error(where_ + ": too few values");
    }
    return words_[next_++];
}

double GoldenLine::Number() {
    const std::string word = Word();
    char* end = nullptr;
    const double number = std::strtod(word.c_str(), &end);
    if (*end != '\0') {
        throw std::runtime_error(where_ + ": not a number: " + word);
    }
    return number;
}

int GoldenLine::Integer() {
    return std::stoi(Word());
}

size_t GoldenLine::Count() {
    return static_cast<size_t>(std::stoull(Word()));
}

unsigned int GoldenLine::Packed() {
    return static_cast<unsigned int>(std::stoul(Word(), nullptr, 16));
}

Bytes GoldenLine::Stream() {
    const std::string digits = Word();
    Bytes bytes;
    if (digits == "-") {
        return bytes;
    }
    for (size_t digit = 0; digit + 1 < digits.size(); digit += 2) {
        bytes.push_back(
            static_cast<unsigned char>(std::stoul(digits.substr(digit, 2), nullptr, 16)));
    }
    return bytes;
}

ON_UUID GoldenLine::Uuid() {
    std::string digits = Word();
    const auto hexAt = [&digits](size_t first, size_t count) {
        return std::stoul(digits.substr(first, count), nullptr, 16);
    };
    ON_UUID id = ON_nil_uuid;
    id.Data1 = static_cast<std::uint32_t>(hexAt(0, 8));
    id.Data2 = static_cast<std::uint16_t>(hexAt(9, 4));
    id.Data3 = static_cast<std::uint16_t>(hexAt(14, 4));
    digits.erase(23, 1);
    for (size_t byte = 0; byte < 8; ++byte) {
        id.Data4[byte] = static_cast<unsigned char>(hexAt(19 + 2 * byte, 2));
    }
    return id;
}

ON_wString GoldenLine::String() {
    std::wstring text;
    for (size_t left = Count(); left > 0; --left) {
        const unsigned int character = Packed();
        if (sizeof(wchar_t) == 2 && character > 0xffffu) {
            text += static_cast<wchar_t>(0xd800u + ((character - 0x10000u) >> 10));
            text += static_cast<wchar_t>(0xdc00u + ((character - 0x10000u) & 0x3ffu));
        } else {
            text += static_cast<wchar_t>(character);
        }
    }
    return ON_wString(text.c_str());
}

ON_2dPoint GoldenLine::Point2() {
    const double x = Number();
    return ON_2dPoint(x, Number());
}

ON_3dPoint GoldenLine::Point() {
    const double x = Number();
    const double y = Number();
    return ON_3dPoint(x, y, Number());
}

ON_3dVector GoldenLine::Vector() {
    return ON_3dVector(Point());
}

ON_Interval GoldenLine::Interval() {
    const double t0 = Number();
    return ON_Interval(t0, Number());
}

ON_Line GoldenLine::Line() {
    const ON_3dPoint from = Point();
    return ON_Line(from, Point());
}

ON_BoundingBox GoldenLine::Box() {
    const ON_3dPoint minimum = Point();
    return ON_BoundingBox(minimum, Point());
}

ON_Plane GoldenLine::Plane() {
    ON_Plane plane;
    plane.origin = Point();
    plane.xaxis = Vector();
    plane.yaxis = Vector();
    plane.zaxis = Vector();
    const ON_3dVector normal = Vector();
    plane.plane_equation = ON_PlaneEquation(normal.x, normal.y, normal.z, Number());
    return plane;
}

ON_Circle GoldenLine::Circle() {
    ON_Circle circle;
    circle.plane = Plane();
    circle.radius = Number();
    return circle;
}

ON_Xform GoldenLine::Xform() {
    ON_Xform xform;
    for (auto& row : xform.m_xform) {
        for (double& entry : row) {
            entry = Number();
        }
    }
    return xform;
}

Bytes FirstBytes(const Bytes& bytes, size_t count) {
    return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
}

std::vector<GoldenLine> GoldenCases(const std::string& fileName, const std::string& keyword,
                                    size_t expectedCount) {
    std::ifstream file(std::string(VERIDANE_KERNEL_GOLDEN_DIR) + "/" + fileName);
    EXPECT_TRUE(file.is_open()) << fileName;
    std::vector<GoldenLine> cases;
    std::string text;
    for (int lineNumber = 1; std::getline(file, text); ++lineNumber) {
        std::istringstream stream(text);
        std::string word;
        if (!(stream >> word) || word != keyword) {
            continue;
        }
        std::vector<std::string> words;
        while (stream >> word) {
            words.push_back(word);
        }
        cases.emplace_back(fileName + ":" + std::to_string(lineNumber) + " " + keyword,
                           std::move(words));
    }
    EXPECT_EQ(cases.size(), expectedCount) << fileName << " " << keyword;
    EXPECT_FALSE(cases.empty()) << fileName << " " << keyword;
    return cases;
}

}  // namespace kerneltest
