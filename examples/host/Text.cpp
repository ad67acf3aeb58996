// By hand, since what the standard library has for this goes by the locale or throws at what is no
// character. `wchar_t` has 32 bits on the systems that the host is built for.

#include "Text.h"

#include <cstdint>

namespace Host {

namespace {

static_assert(sizeof(wchar_t) == 4, "one character of text, one of the string");

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::uint32_t kGreatest = 0x10FFFF;

bool IsCharacter(std::uint32_t code) {
    return code <= kGreatest && (code < 0xD800 || code > 0xDFFF);
}

// Of ASCII and of the second row of 128.
bool IsControl(std::uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

void AppendUtf8(std::string& text, std::uint32_t code) {
    const int tailCount = code < 0x80 ? 0 : (code < 0x800 ? 1 : (code < 0x10000 ? 2 : 3));
    constexpr std::uint32_t kLead[] = {0x00, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(kLead[tailCount] | (code >> (6 * tailCount)));
    for (int tail = tailCount - 1; tail >= 0; --tail)
        text += static_cast<char>(0x80 | ((code >> (6 * tail)) & 0x3F));
}

// How many bytes follow the first one of a character; -1 for a byte that begins none.
int TailCount(std::uint8_t lead) {
    if (lead < 0x80)
        return 0;
    if (lead >= 0xC2 && lead < 0xE0)
        return 1;
    if (lead >= 0xE0 && lead < 0xF0)
        return 2;
    return lead >= 0xF0 && lead < 0xF5 ? 3 : -1;
}

}  // namespace

std::string Printable(std::wstring_view text) {
    std::string printable;
    for (const wchar_t character : text) {
        const auto code = static_cast<std::uint32_t>(character);
        AppendUtf8(printable, IsCharacter(code) && !IsControl(code) ? code : kReplacement);
    }
    return printable;
}

std::optional<std::wstring> FromUtf8(std::string_view bytes) {
    constexpr std::uint32_t kLeastOf[] = {0, 0x80, 0x800, 0x10000};
    std::wstring text;
    for (size_t next = 0; next < bytes.size();) {
        const auto lead = static_cast<std::uint8_t>(bytes[next++]);
        const int tailCount = TailCount(lead);
        if (tailCount < 0 || bytes.size() - next < static_cast<size_t>(tailCount))
            return std::nullopt;
        std::uint32_t code = tailCount == 0 ? lead : lead & (0x3FU >> tailCount);
        for (int tail = 0; tail < tailCount; ++tail) {
            const auto byte = static_cast<std::uint8_t>(bytes[next++]);
            if ((byte & 0xC0) != 0x80)
                return std::nullopt;
            code = (code << 6) | (byte & 0x3FU);
        }
        if (code < kLeastOf[tailCount] || !IsCharacter(code))
            return std::nullopt;
        text += static_cast<wchar_t>(code);
    }
    return text;
}

}  // namespace Host
