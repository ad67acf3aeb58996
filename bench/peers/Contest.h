/// What is compared: operations, what each starts from, and who does it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace Vr::bench::peers {

using Point = std::array<double, 3>;
using Triangle = std::array<uint64_t, 3>;

/// A mesh as plain arrays, from which every contestant builds its own structure beforehand.
struct PlainMesh {
    std::string name;
    std::vector<Point> points;
    std::vector<Triangle> triangles;
    bool isManifold = true;  ///< Whether half-edge structures can hold it.
};

/// What all contestants of one row start from; an operation fills what it needs.
struct Input {
    size_t triangleCount = 0;         ///< What the cost is divided by.
    std::vector<Point> points;        ///< Positions, or normals where normals are merged.
    std::vector<Triangle> triangles;  ///< Numbers of points or of colours.
    std::vector<size_t> faces;        ///< Triangles to delete, ascending.
    std::vector<uint32_t> colors;     ///< Colours to merge or to store.
    std::vector<PlainMesh> parts;     ///< Meshes to merge.
    bool isManifold = true;           ///< As of the mesh that it was made from.
};

/// A number by which the results of contestants are compared.
struct Figure {
    std::string name;
    double value;
    double tolerance = 0.0;  ///< Relative.
};
using Figures = std::vector<Figure>;

/// One contestant at work on one input. It holds its structure; `prepare` and `result` are not timed.
struct Task {
    std::function<void()> prepare = [] {};  ///< Before each run: puts back what a run changed.
    std::function<void()> run;
    std::function<Figures()> result = [] { return Figures(); };  ///< After a run.
};

/// Thrown by `Contestant::make` when the peer's structure cannot hold the mesh; it is then left out.
class CannotHold : public std::runtime_error {
public:
    CannotHold() : std::runtime_error("cannot hold this mesh") {}
};

constexpr size_t kAnySize = std::numeric_limits<size_t>::max();

struct Contestant {
    std::string operation;
    std::string peer;  ///< "Veridane", "limit" or the name of the other library.
    std::string call;  ///< What is called.
    std::string note;  ///< What it does less or more than the operation.
    std::function<Task(const Input&)> make;  ///< May throw `CannotHold`.
    bool isSequential = true;                ///< Whether it is measured with one thread.
    bool isParallel = false;                 ///< Whether it is measured with several threads too.
    bool isComparable = true;  ///< Whether it does enough to be a measure; others only inform.
    size_t mostTriangles = kAnySize;  ///< Larger meshes take it too long or too much memory.
};

constexpr const char* kOurs = "Veridane";
constexpr const char* kLimit = "limit";

struct Operation {
    std::string name;
    std::string title;
    bool isParallel = false;  ///< Whether the library runs it on several threads.
    std::function<Input(const PlainMesh&)> input;
};

/// Everything that takes part. Families and peers add themselves; Families.h has the list.
struct Contest {
    std::vector<Operation> operations;
    std::vector<Contestant> contestants;
    std::map<std::string, std::string> versionOf;              ///< By peer.
    std::vector<std::function<void(int threads)>> useThreads;  ///< Pins each peer's threads.
};

}  // namespace Vr::bench::peers
