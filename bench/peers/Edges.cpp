// Free edges, from index triples alone.

#include <memory>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/Limits.h"
#include "peers/OurMesh.h"

namespace Vr::bench::peers {

namespace {

Task FreeEdges(const Input& input) {
    using Edges = std::vector<std::pair<size_t, size_t>>;
    const OurMesh mesh = MakeOurMesh(input.points, input.triangles);
    const auto edges = std::make_shared<Edges>();
    Task task;
    task.prepare = [=] { Edges().swap(*edges); };
    task.run = [=] { mesh->GetFreeEdges(*edges); };
    task.result = [=] {
        double ends = 0.0;
        for (const auto& [from, to] : *edges)
            ends += static_cast<double>(from + to);
        return Figures{Count("edges", edges->size()), {"ends of edges", ends, kExact}};
    };
    return task;
}

}  // namespace

void AddEdges(Contest& contest) {
    contest.operations.push_back({"free_edges", "free edges", false, WholeMesh});
    contest.contestants.push_back(
        Ours("free_edges", "GetFreeEdges", "directed, ascending", FreeEdges));
    contest.contestants.push_back(StreamLimit("free_edges"));
}

}  // namespace Vr::bench::peers
