// meshoptimizer works on plain arrays of 32-bit numbers; a value is any run of bytes.

#include <meshoptimizer.h>

#include <memory>

#include "peers/Figures.h"
#include "peers/Peers.h"

namespace Vr::bench::peers {

namespace {

constexpr const char* kName = "meshoptimizer";

// Left uninitialised: the library writes every element.
template <class Element>
using Block = std::unique_ptr<Element[]>;

std::vector<unsigned int> Numbers(const std::vector<Triangle>& triangles) {
    std::vector<unsigned int> numbers;
    numbers.reserve(3 * triangles.size());
    for (const Triangle& triangle : triangles)
        for (const uint64_t number : triangle)
            numbers.push_back(static_cast<unsigned int>(number));
    return numbers;
}

template <class Value>
struct Joined {
    std::vector<Value> values;
    std::vector<unsigned int> numbers;

    Block<unsigned int> newValueOf;
    size_t newValueCount = 0;
    Block<Value> newValues;
    Block<unsigned int> newNumbers;

    void MakeTable() {
        newValueOf.reset(new unsigned int[values.size()]);
        newValueCount =
            meshopt_generateVertexRemap(newValueOf.get(), numbers.data(), numbers.size(),
                                        values.data(), values.size(), sizeof(Value));
    }

    void ApplyTable() {
        newValues.reset(new Value[newValueCount]);
        meshopt_remapVertexBuffer(newValues.get(), values.data(), values.size(), sizeof(Value),
                                  newValueOf.get());
        newNumbers.reset(new unsigned int[numbers.size()]);
        meshopt_remapIndexBuffer(newNumbers.get(), numbers.data(), numbers.size(),
                                 newValueOf.get());
    }

    void LetGo() {
        newValueOf.reset();
        newValues.reset();
        newNumbers.reset();
    }
};

template <class Value>
Task JoinTask(std::shared_ptr<Joined<Value>> joined, bool withBuffers) {
    Task task;
    task.prepare = [=] { joined->LetGo(); };
    task.run = [=] {
        joined->MakeTable();
        if (withBuffers)
            joined->ApplyTable();
    };
    return task;
}

std::function<Task(const Input&)> JoinPoints(bool withBuffers) {
    return [=](const Input& input) {
        const auto joined = std::make_shared<Joined<Point>>();
        joined->values = input.points;
        joined->numbers = Numbers(input.triangles);
        Task task = JoinTask(joined, withBuffers);
        task.result = [=] {
            Figures figures = {Count("vertices", joined->newValueCount)};
            if (withBuffers)
                figures.push_back(VectorSum(
                    "positions", joined->numbers.size(), kDoubles,
                    [&](size_t corner) { return joined->newValues[joined->newNumbers[corner]]; }));
            return figures;
        };
        return task;
    };
}

std::function<Task(const Input&)> JoinColors(bool withBuffers) {
    return [=](const Input& input) {
        const auto joined = std::make_shared<Joined<uint32_t>>();
        joined->values = input.colors;
        joined->numbers = Numbers(input.triangles);
        Task task = JoinTask(joined, withBuffers);
        task.result = [=] {
            Figures figures = {Count("colors", joined->newValueCount)};
            if (withBuffers)
                figures.push_back(NumberSum(
                    "color of corners", joined->numbers.size(),
                    [&](size_t corner) { return joined->newValues[joined->newNumbers[corner]]; }));
            return figures;
        };
        return task;
    };
}

// Parts are put behind one another first, for there is no call for several meshes.
Task Merge(const Input& input) {
    const auto joined = std::make_shared<Joined<Point>>();
    std::vector<std::vector<unsigned int>> numbersOf;
    for (const PlainMesh& part : input.parts)
        numbersOf.push_back(Numbers(part.triangles));
    Task task;
    task.prepare = [=] {
        joined->LetGo();
        std::vector<Point>().swap(joined->values);
        std::vector<unsigned int>().swap(joined->numbers);
    };
    task.run = [=, parts = input.parts] {
        size_t pointCount = 0;
        size_t numberCount = 0;
        for (size_t part = 0; part < parts.size(); ++part) {
            pointCount += parts[part].points.size();
            numberCount += numbersOf[part].size();
        }
        joined->values.reserve(pointCount);
        joined->numbers.reserve(numberCount);
        for (size_t part = 0; part < parts.size(); ++part) {
            const auto first = static_cast<unsigned int>(joined->values.size());
            joined->values.insert(joined->values.end(), parts[part].points.begin(),
                                  parts[part].points.end());
            for (const unsigned int number : numbersOf[part])
                joined->numbers.push_back(first + number);
        }
        joined->MakeTable();
        joined->ApplyTable();
    };
    task.result = [=] {
        return Figures{Count("vertices", joined->newValueCount),
                       VectorSum("positions", joined->numbers.size(), kDoubles, [&](size_t corner) {
                           return joined->newValues[joined->newNumbers[corner]];
                       })};
    };
    return task;
}

Task Compact(const Input& input) {
    const auto numbers = std::make_shared<std::vector<unsigned int>>();
    const auto points = std::make_shared<std::vector<Point>>(input.points);
    const auto kept = std::make_shared<Block<Point>>();
    const auto keptCount = std::make_shared<size_t>(0);
    Task task;
    task.prepare = [=, original = Numbers(input.triangles)] {
        *numbers = original;
        kept->reset();
    };
    task.run = [=] {
        kept->reset(new Point[points->size()]);
        *keptCount = meshopt_optimizeVertexFetch(kept->get(), numbers->data(), numbers->size(),
                                                 points->data(), points->size(), sizeof(Point));
    };
    task.result = [=] {
        return Figures{Count("vertices", *keptCount),
                       VectorSum("positions", numbers->size(), kDoubles,
                                 [&](size_t corner) { return (*kept)[(*numbers)[corner]]; })};
    };
    return task;
}

}  // namespace

void AddMeshoptimizer(Contest& contest) {
    contest.versionOf[kName] = VERIDANE_PEER_MESHOPTIMIZER;
    auto& contestants = contest.contestants;
    const std::string less = "not sorted: order of first use; 32-bit numbers";
    for (const char* operation : {"weld", "weld_indexed", "merge_normals"}) {
        contestants.push_back(
            Peer(operation, kName, "generateVertexRemap, remapBuffers", less, JoinPoints(true)));
        contestants.push_back(Peer(operation, kName, "generateVertexRemap",
                                   less + "; the table only, no new arrays", JoinPoints(false)));
    }
    contestants.push_back(
        Peer("merge_colors", kName, "generateVertexRemap, remapBuffers", less, JoinColors(true)));
    contestants.push_back(Peer("merge_colors", kName, "generateVertexRemap",
                               less + "; the table only, no new arrays", JoinColors(false)));
    contestants.push_back(Peer("merge", kName, "concatenation, generateVertexRemap, remapBuffers",
                               "32-bit numbers, no maps", Merge));
    contestants.push_back(Peer("compact", kName, "optimizeVertexFetch",
                               "order of first use; 32-bit numbers", Compact));
}

}  // namespace Vr::bench::peers
