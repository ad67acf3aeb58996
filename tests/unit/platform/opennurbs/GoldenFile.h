/// Reads the recorded results under tests/golden/opennurbs: one case a line, a keyword and its
/// values separated by spaces.
#pragma once

#include <string>
#include <vector>

#include "opennurbs.h"

namespace kerneltest {

using Bytes = std::vector<unsigned char>;

/// One recorded case, read from left to right.
///
/// - Throws: std::runtime_error when the line holds fewer values than asked for.
class GoldenLine {
public:
    GoldenLine(std::string where, std::vector<std::string> words)
        : where_(std::move(where)), words_(std::move(words)) {}

    /// File, line number and keyword, for messages.
    const std::string& Where() const { return where_; }

    std::string Word();
    /// What is left of the line is used up.
    bool IsAtEnd() const { return next_ == words_.size(); }

    double Number();
    bool Flag() { return Integer() != 0; }
    int Integer();
    size_t Count();
    /// A hexadecimal number.
    unsigned int Packed();
    /// Hexadecimal bytes in stream order; "-" stands for none.
    Bytes Stream();
    ON_UUID Uuid();
    /// A length and that many characters in hexadecimal.
    ON_wString String();

    ON_2dPoint Point2();
    ON_3dPoint Point();
    ON_3dVector Vector();
    ON_Interval Interval();
    ON_Line Line();
    ON_BoundingBox Box();
    ON_Plane Plane();
    ON_Circle Circle();
    ON_Xform Xform();

private:
    std::string where_;
    std::vector<std::string> words_;
    size_t next_ = 0;
};

/// Returns the first `count` bytes.
Bytes FirstBytes(const Bytes& bytes, size_t count);

/// Returns the lines of a file that start with a keyword, and fails the running test unless there
/// are exactly `expectedCount` of them.
std::vector<GoldenLine> GoldenCases(const std::string& fileName, const std::string& keyword,
                                    size_t expectedCount);

}  // namespace kerneltest
