// `check`, `info`, `edges`, `copy` and `join`: documents as they are.

#include <fmt/core.h>

#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "DocumentCheck.h"
#include "Failure.h"
#include "Info.h"
#include "LoadFile.h"
#include "Output.h"

namespace Host {

namespace {

DocumentReport CheckFile(const std::string& path) {
    try {
        LoadFile file(path);
        return CheckDocument(file);
    } catch (...) {
        RethrowAsFailure(path);
    }
}

void Check(const std::string& path) {
    const DocumentReport report = CheckFile(path);
    for (const DocumentFinding& finding : report.findings) {
        const Vr::CheckCode code = finding.finding.code;
        Print(fmt::format("{} ({}, {})\n", Describe(finding), NameOf(SeverityOf(code)),
                          NameOf(code)));
    }
    const uint64_t untoldCount = report.summary.findingCount - report.findings.size();
    if (untoldCount > 0)
        Print(fmt::format("and {} more\n", untoldCount));
    if (!report.summary.IsSafe())
        throw Failure(path, "not safe to load");
    Print(fmt::format("{}: safe to load, {}, {}\n", path,
                      Counted(report.objectCount, "object", "objects"),
                      Counted(report.summary.arrayCount, "array", "arrays")));
}

void AddCheck(CLI::App& app) {
    const auto path = std::make_shared<std::string>();
    CLI::App* const command =
        app.add_subcommand("check", "Tells what is wrong with a document, without loading it");
    command->add_option("document", *path, "The document to check")->required();
    command->callback([path] { Check(*path); });
}

void AddInfo(CLI::App& app) {
    const auto source = std::make_shared<DocumentSource>();
    CLI::App* const command = app.add_subcommand("info", "Describes what a document holds");
    AddInput(*command, *source);
    command->callback([source] { Print(DescribeDocument(LoadDocument(*source), source->path)); });
}

void AddEdges(CLI::App& app) {
    const auto source = std::make_shared<DocumentSource>();
    CLI::App* const command = app.add_subcommand(
        "edges",
        "Lists the free edges of meshes: object, first vertex, second vertex, a line each");
    AddInput(*command, *source);
    command->callback([source] {
        const Document document = LoadDocument(*source);
        Print(ListFreeEdges(document));
        // not among the edges, which scripts read
        if (const std::string others = CountOthers(document); !others.empty())
            PrintNote(fmt::format("left out: {}\n", others));
    });
}

// Arrays are shared inside each of the documents and not between them, as before.
Document Join(const std::vector<std::string>& paths, bool areTrusted) {
    Document joined;
    for (const std::string& path : paths) {
        const Document document = LoadDocument({path, areTrusted});
        joined.objects.insert(joined.objects.end(), document.objects.begin(),
                              document.objects.end());
    }
    return joined;
}

void AddJoin(CLI::App& app) {
    struct Options {
        std::vector<std::string> sources;
        bool areTrusted = false;
        std::string target;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("join", "Makes one document of the objects of several");
    command->add_option("document", options->sources, "The documents to load, in this order")
        ->required();
    AddTrust(*command, options->areTrusted);
    AddOutput(*command, options->target);
    command->callback([options] {
        StoreAndReport(Join(options->sources, options->areTrusted), options->target);
    });
}

void AddCopy(CLI::App& app) {
    struct Options {
        DocumentSource source;
        std::string target;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "copy", "Loads a document and stores it again; the bytes come out equal");
    AddInput(*command, options->source, "source");
    command->add_option("target", options->target, "The document to store")->required();
    command->callback(
        [options] { StoreAndReport(LoadDocument(options->source), options->target); });
}

}  // namespace

void AddDocumentCommands(CLI::App& app) {
    AddCheck(app);
    AddInfo(app);
    AddEdges(app);
    AddCopy(app);
    AddJoin(app);
}

}  // namespace Host
