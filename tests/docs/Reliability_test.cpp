// The table of findings in docs/reliability.md against the library's own.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <string>

#include "serialize/CheckStream.h"

namespace {

using Vr::CheckCode;

struct Row {
    std::string name;
    std::string severity;
};

std::map<int, Row> ReadCodes() {
    std::ifstream page(VERIDANE_SOURCE_FOLDER "/docs/reliability.md");
    const std::regex shape("^\\| (\\d+) \\| ([a-z-]+) \\| ([a-z]+) \\| .*");
    std::map<int, Row> rows;
    for (std::string line; std::getline(page, line);) {
        std::smatch parts;
        if (std::regex_match(line, parts, shape))
            rows[std::stoi(parts[1])] = {parts[2], parts[3]};
    }
    return rows;
}

TEST(ReliabilityPage, ListsEveryCodeWithItsNameAndSeverity) {
    const std::map<int, Row> rows = ReadCodes();
    size_t knownCount = 0;
    for (int number = 0; number < 1000; ++number) {
        const auto code = static_cast<CheckCode>(number);
        const std::string name = NameOf(code);
        if (name == "unknown-code")
            continue;
        ++knownCount;
        ASSERT_EQ(rows.count(number), 1u) << name;
        EXPECT_EQ(rows.at(number).name, name);
        EXPECT_EQ(rows.at(number).severity, NameOf(SeverityOf(code))) << name;
    }
    EXPECT_EQ(rows.size(), knownCount);
    EXPECT_GT(knownCount, 0u);
}

}  // namespace
