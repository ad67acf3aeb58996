/// What a check found: a matcher, and how it is shown.
#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <ostream>
#include <string>

#include "serialize/CheckStream.h"

namespace Vr {

/// Shows a finding in the message of a test that fails.
inline void PrintTo(const CheckFinding& finding, std::ostream* stream) {
    *stream << NameOf(finding.code) << " at " << finding.offset << ": " << finding.text;
}

namespace test {

inline testing::Matcher<CheckFinding> Finding(CheckCode code, uint64_t offset,
                                              const std::string& text) {
    return testing::AllOf(testing::Field("code", &CheckFinding::code, code),
                          testing::Field("offset", &CheckFinding::offset, offset),
                          testing::Field("text", &CheckFinding::text, text));
}

}  // namespace test

}  // namespace Vr
