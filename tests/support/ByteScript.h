/// Expected bytes, built field by field, each with its meaning.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Vr::test {

/// A stream written down as a list of fields. Numbers are little-endian.
///
///     ByteScript()
///         .NewClass(3, "CTestItem", "class is number 1")
///         .Dword(0x11223344, "body of a, object number 2")
///         .Word(0x8001, "class number 1")
class ByteScript {
public:
    struct Field {
        std::size_t offset;
        std::size_t size;
        std::string meaning;
    };

    ByteScript& OneByte(std::uint8_t value, std::string meaning) {
        return Number(value, 1, std::move(meaning));
    }
    ByteScript& Word(std::uint16_t value, std::string meaning) {
        return Number(value, 2, std::move(meaning));
    }
    ByteScript& Dword(std::uint32_t value, std::string meaning) {
        return Number(value, 4, std::move(meaning));
    }
    ByteScript& Qword(std::uint64_t value, std::string meaning) {
        return Number(value, 8, std::move(meaning));
    }
    ByteScript& Double(double value, std::string meaning) {
        std::uint64_t bits;
        std::memcpy(&bits, &value, sizeof(bits));
        return Number(bits, 8, std::move(meaning));
    }
    /// The characters of `text`, without a terminator.
    ByteScript& Text(std::string_view text, std::string meaning) {
        return Raw({text.begin(), text.end()}, std::move(meaning));
    }
    /// Bytes as pairs of hexadecimal digits, with spaces between them or without.
    ByteScript& Hex(std::string_view digits, std::string meaning) {
        std::string compact;
        std::copy_if(digits.begin(), digits.end(), std::back_inserter(compact),
                     [](char digit) { return digit != ' '; });
        std::vector<std::uint8_t> bytes;
        for (std::size_t digit = 0; digit + 1 < compact.size(); digit += 2) {
            bytes.push_back(
                static_cast<std::uint8_t>(std::stoul(compact.substr(digit, 2), nullptr, 16)));
        }
        return Raw(bytes, std::move(meaning));
    }
    ByteScript& Raw(const std::vector<std::uint8_t>& bytes, std::string meaning) {
        fields_.push_back({bytes_.size(), bytes.size(), std::move(meaning)});
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }
    ByteScript& Append(const ByteScript& other) {
        for (const Field& field : other.fields_) {
            fields_.push_back({bytes_.size() + field.offset, field.size, field.meaning});
        }
        bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
        return *this;
    }
    /// The description of a class that is new to an MFC archive.
    ByteScript& NewClass(std::uint16_t schema, std::string_view name, const std::string& meaning) {
        return Word(0xFFFF, "new-class tag")
            .Word(schema, "schema word")
            .Word(static_cast<std::uint16_t>(name.size()), "length of the class name")
            .Text(name, "class name -> " + meaning);
    }

    const std::vector<std::uint8_t>& Bytes() const { return bytes_; }
    const std::vector<Field>& Fields() const { return fields_; }
    /// The first `size` bytes.
    std::vector<std::uint8_t> Prefix(std::size_t size) const {
        return {bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(size)};
    }

    /// Compares; a failure names the first differing byte and the field it is in.
    ///
    ///     EXPECT_TRUE(script.Matches(file.Bytes()));
    ::testing::AssertionResult Matches(const std::vector<std::uint8_t>& actual) const {
        const auto [expectedByte, actualByte] =
            std::mismatch(bytes_.begin(), bytes_.end(), actual.begin(), actual.end());
        if (expectedByte == bytes_.end() && actualByte == actual.end()) {
            return ::testing::AssertionSuccess();
        }
        const auto offset = static_cast<std::size_t>(expectedByte - bytes_.begin());
        std::ostringstream text;
        text << "first difference at byte " << offset << " (0x" << std::hex << offset << std::dec
             << "): ";
        if (expectedByte == bytes_.end()) {
            text << "expected the end, got " << actual.size() - offset << " more bytes";
        } else {
            text << "expected " << HexOf(*expectedByte) << ", got "
                 << (actualByte == actual.end() ? "the end" : HexOf(*actualByte)) << ", in "
                 << DescribeFieldAt(offset);
        }
        return ::testing::AssertionFailure() << text.str();
    }

private:
    ByteScript& Number(std::uint64_t value, std::size_t size, std::string meaning) {
        std::vector<std::uint8_t> bytes(size);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(value & 0xFF);
            value >>= 8;
        }
        return Raw(bytes, std::move(meaning));
    }

    static std::string HexOf(std::uint8_t byte) {
        std::ostringstream text;
        text << std::hex << std::setfill('0') << std::setw(2) << static_cast<unsigned>(byte);
        return text.str();
    }

    std::string DescribeFieldAt(std::size_t offset) const {
        const auto field =
            std::find_if(fields_.begin(), fields_.end(), [offset](const Field& candidate) {
                return candidate.offset <= offset && offset < candidate.offset + candidate.size;
            });
        std::ostringstream text;
        text << "byte " << offset - field->offset << " of the " << field->size << " of \""
             << field->meaning << "\"";
        return text.str();
    }

    std::vector<std::uint8_t> bytes_;
    std::vector<Field> fields_;
};

}  // namespace Vr::test
