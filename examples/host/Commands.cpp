// Checks work on the text of an option, before the conversion to a number: that takes "nan" and "inf" for
// numbers, turns -1 into a huge one where none is below 0, and reads 010 as eight.

#include "Commands.h"

#include <fmt/core.h>

#include <charconv>
#include <cmath>

#include "Output.h"

namespace Host {

namespace {

bool ReadFinite(const std::string& text, double& number) {
    return CLI::detail::lexical_cast(text, number) && std::isfinite(number);
}

bool IsWhole(const std::string& text) {
    size_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    const bool hasLeadingZero = text.size() > 1 && text[0] == '0';
    return error == std::errc() && stop == end && !hasLeadingZero;
}

}  // namespace

void AddInput(CLI::App& command, DocumentSource& source, const std::string& name) {
    command.add_option(name, source.path, "The document to load")->required();
    AddTrust(command, source.isTrusted);
}

void AddTrust(CLI::App& command, bool& isTrusted) {
    command.add_flag("--trust", isTrusted,
                     "Loads the document without checking it first; only for files of one's own");
}

void AddOutput(CLI::App& command, std::string& path) {
    command.add_option("-o,--output", path, "The document to store")->required();
}

void AddPoint(CLI::App& command, const std::string& name, Coordinates& point,
              const std::string& description) {
    command.add_option(name, point, description)->expected(3)->check(IsFinite())->required();
}

ON_3dPoint ToPoint(const Coordinates& coordinates) {
    return ON_3dPoint(coordinates[0], coordinates[1], coordinates[2]);
}

CLI::Validator IsFinite() {
    return CLI::Validator(
        [](const std::string& text) {
            double number = 0.0;
            return ReadFinite(text, number) ? std::string() : text + " is not a finite number";
        },
        "");
}

CLI::Validator IsPositive() {
    return CLI::Validator(
        [](const std::string& text) {
            double number = 0.0;
            return ReadFinite(text, number) && number > 0.0 ? std::string()
                                                            : text + " is not a positive number";
        },
        "");
}

CLI::Validator IsWholeNumber() {
    return CLI::Validator(
        [](const std::string& text) {
            return IsWhole(text) ? std::string() : "'" + text + "' is not a whole number";
        },
        "");
}

void StoreAndReport(const Document& document, const std::filesystem::path& path,
                    const std::string& done) {
    const uint64_t length = StoreDocument(document, path);
    Print(fmt::format("{}stored {}: {}, {} bytes\n", done, path.string(),
                      Counted(document.objects.size(), "object", "objects"), length));
}

}  // namespace Host
