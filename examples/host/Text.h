/// Wide text of documents and the UTF-8 of terminals.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Host {

/// Returns text in UTF-8, with U+FFFD in place of control characters and of what is no character.
std::string Printable(std::wstring_view text);

/// Returns the text of UTF-8; nothing where that is damaged.
std::optional<std::wstring> FromUtf8(std::string_view bytes);

}  // namespace Host
