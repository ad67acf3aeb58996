// Takes every operation on every mesh in turn. One mesh is in memory at a time. Thread counts come
// last: once a process has a second thread, counts of handles are atomic, and that is for ever.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/Models.h"
#include "peers/Peers.h"
#include "peers/Report.h"
#include "support/MeshShapes.h"

namespace {

using namespace Vr::bench::peers;

struct Choice {
    std::vector<std::string> meshes = {"sphere-1M", "grid-1M-shuf"};
    std::vector<std::string> files;
    std::vector<std::string> operations;
    std::vector<std::string> peers;
    std::vector<int> threads = {1, 2};
    std::string json;
    std::string label;
    Settings settings;
};

bool Has(const std::vector<std::string>& chosen, const std::string& name) {
    return chosen.empty() || std::find(chosen.begin(), chosen.end(), name) != chosen.end();
}

Contest MakeContest(const Choice& choice) {
    Contest contest;
    contest.useThreads.push_back(Vr::bench::UseThreads);
    // Ours first: results are compared with the first of each operation.
    for (const auto add : {AddWeld, AddNormals, AddEdit, AddEdges, AddMeasure, AddTransform,
                           AddMerge, AddCopy, AddFile})
        add(contest);
    AddPeers(contest);
    auto& contestants = contest.contestants;
    contestants.erase(std::remove_if(contestants.begin(), contestants.end(),
                                     [&](const Contestant& contestant) {
                                         return !Has(choice.peers, contestant.peer);
                                     }),
                      contestants.end());
    return contest;
}

// Returns whether all results are the same.
bool RunMesh(const Contest& contest, const Choice& choice, const PlainMesh& mesh, int threadCount,
             std::vector<Row>& all) {
    bool areSame = true;
    for (const Operation& operation : contest.operations) {
        if (!Has(choice.operations, operation.name) || (threadCount > 1 && !operation.isParallel))
            continue;
        std::vector<Row> rows =
            RunOperation(contest, operation, mesh, threadCount, choice.settings);
        fmt::print("{}\n", TableOf(operation, rows));
        std::fflush(stdout);
        for (Row& row : rows) {
            areSame = areSame && row.difference.empty();
            all.push_back(std::move(row));
        }
    }
    return areSame;
}

bool Run(const Choice& choice) {
    Vr::bench::WarmHeap();
    const Contest contest = MakeContest(choice);
    std::vector<Row> rows;
    bool areSame = true;
    for (const int threadCount : choice.threads) {
        for (const std::string& name : choice.meshes)
            areSame &= RunMesh(contest, choice, MakeMesh(name), threadCount, rows);
        for (const std::string& path : choice.files)
            // Models may have what the operations mean differently, edges of three faces say.
            RunMesh(contest, choice, LoadModel(path), threadCount, rows);
    }
    if (!choice.json.empty())
        WriteJson(choice.json, choice.label, contest, choice.settings, rows);
    if (!areSame)
        fmt::print(stderr, "results differ; see the lines that begin with \"differs:\"\n");
    return areSame;
}

}  // namespace

int main(int argc, char** argv) {
    Choice choice;
    CLI::App app(
        "Runs every mesh operation and its nearest equivalents in other libraries on the "
        "same meshes, in turn, and prints nanoseconds a triangle as Markdown tables.");
    app.add_option("--meshes", choice.meshes, "built-in meshes, sphere-10k to grid-10M-shuf")
        ->delimiter(',')
        ->check(CLI::IsMember(MeshNames()));
    app.add_option("--file", choice.files, "models that Assimp can read")->check(CLI::ExistingFile);
    app.add_option("--operations", choice.operations, "by default all")->delimiter(',');
    app.add_option("--peers", choice.peers, "Veridane, limit and other libraries; by default all")
        ->delimiter(',');
    app.add_option("--threads", choice.threads, "thread counts of parallel operations")
        ->delimiter(',');
    app.add_option("--repetitions", choice.settings.repetitions, "turns of each contestant")
        ->check(CLI::PositiveNumber)
        ->take_last();
    app.add_option("--json", choice.json, "file for machine, versions and all figures");
    app.add_option("--label", choice.label, "what is measured, for the file of figures");
    bool withoutMeshes = false;
    app.add_flag("--no-meshes", withoutMeshes, "only the files");
    CLI11_PARSE(app, argc, argv);
    if (withoutMeshes)
        choice.meshes.clear();
    try {
        return Run(choice) ? 0 : 1;
    } catch (const std::exception& failure) {
        fmt::print(stderr, "veridane-peers: {}\n", failure.what());
        return 2;
    }
}
