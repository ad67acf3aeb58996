// `info`, `edges` and `copy`: documents as they are.

#include <memory>
#include <string>

#include "Commands.h"
#include "Info.h"
#include "Output.h"

namespace Host {

namespace {

void AddInfo(CLI::App& app) {
    const auto path = std::make_shared<std::string>();
    CLI::App* const command = app.add_subcommand("info", "Describes what a document holds");
    command->add_option("document", *path, "The document to load")->required();
    command->callback([path] { Print(DescribeDocument(LoadDocument(*path), *path)); });
}

void AddEdges(CLI::App& app) {
    const auto path = std::make_shared<std::string>();
    CLI::App* const command = app.add_subcommand(
        "edges", "Lists the free edges: object, first vertex, second vertex, a line each");
    command->add_option("document", *path, "The document to load")->required();
    command->callback([path] { Print(ListFreeEdges(LoadDocument(*path))); });
}

void AddCopy(CLI::App& app) {
    struct Options {
        std::string source;
        std::string target;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "copy", "Loads a document and stores it again; the bytes come out equal");
    command->add_option("source", options->source, "The document to load")->required();
    command->add_option("target", options->target, "The document to store")->required();
    command->callback(
        [options] { StoreAndReport(LoadDocument(options->source), options->target); });
}

}  // namespace

void AddDocumentCommands(CLI::App& app) {
    AddInfo(app);
    AddEdges(app);
    AddCopy(app);
}

}  // namespace Host
