// The command line: what to do, and how it ended.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <string>

#include "Commands.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Output.h"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr int kInterrupted = 130;

constexpr const char* kDescription =
    "veridane-host " VERIDANE_HOST_VERSION
    ": imports triangle models into mesh documents, cleans, edits and measures them, and exports "
    "them again.";
constexpr const char* kFooter =
    "A file is replaced only when the new one is complete; failures and Ctrl-C leave it as it "
    "was.\n"
    "Exit status: 0 success, 1 failure, 2 wrong usage, 130 interrupted.";

int Report(int status, std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::fputs(("veridane-host: " + text + '\n').c_str(), stderr);
    return status;
}

int Run(int argumentCount, char** arguments) {
    CLI::App app(kDescription, "veridane-host");
    app.footer(kFooter);
    app.set_version_flag("--version", "veridane-host " VERIDANE_HOST_VERSION);
    // Not `require_subcommand`: that would call a misspelt one a missing one.
    Host::AddModelCommands(app);
    Host::AddShapeCommands(app);
    Host::AddDocumentCommands(app);
    Host::AddEditCommands(app);
    try {
        app.parse(argumentCount, arguments);
        if (app.get_subcommands().empty())
            throw CLI::RequiredError("A subcommand");
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0)
            return Report(kWrongUsage, std::string(error.what()) + " (see --help)");
        app.exit(error);  // prints the help or the version
    }
    Host::FlushOutput();
    return 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    Host::HandleSignals();
    try {
        return Run(argumentCount, arguments);
    } catch (const Host::Interrupted& interrupted) {
        return Report(kInterrupted, interrupted.what());
    } catch (const std::exception& error) {
        return Report(kFailed, error.what());
    }
}
