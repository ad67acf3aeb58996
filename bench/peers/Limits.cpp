// The loops do nothing with what they read but add it up, in a way that the compiler cannot leave out.

#include "peers/Limits.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <utility>

namespace Vr::bench::peers {

namespace {

// Makes the compiler believe that the value is looked at.
template <class Value>
void Keep(Value& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

Task CopyTask(const Traffic& traffic) {
    const size_t bytes = (traffic.readBytes + traffic.writtenBytes) / 2;
    const auto source = std::make_shared<std::vector<char>>(bytes, 'x');
    const auto target = std::make_shared<std::vector<char>>(bytes, 'y');
    Task task;
    task.run = [=] {
        std::memcpy(target->data(), source->data(), source->size());
        Keep(*target->data());
    };
    return task;
}

std::vector<Point> DistinctPoints(const Input& input) {
    std::vector<Point> points = input.points;
    std::sort(points.begin(), points.end());
    points.erase(std::unique(points.begin(), points.end()), points.end());
    std::shuffle(points.begin(), points.end(), std::mt19937_64(20130711));
    return points;
}

// Sorts points by scattering them into slices of equal width in x, crowded slices again in y and z.
class SliceSort {
public:
    explicit SliceSort(std::vector<Point> points) : points_(std::move(points)) {
        sorted_.resize(points_.size());
        spare_.resize(points_.size());
    }

    void Run() {
        sorted_ = points_;
        Sort(0, sorted_.size(), 0);
        Keep(*sorted_.data());
    }

private:
    static constexpr size_t kFew = 24;

    void Sort(size_t begin, size_t end, size_t axis) {
        const auto first = sorted_.begin() + static_cast<std::ptrdiff_t>(begin);
        const auto last = sorted_.begin() + static_cast<std::ptrdiff_t>(end);
        if (end - begin <= kFew || axis == 3) {
            std::sort(first, last);
            return;
        }
        const auto [low, high] = std::minmax_element(
            first, last, [axis](const Point& a, const Point& b) { return a[axis] < b[axis]; });
        const double least = (*low)[axis];
        const double width = (*high)[axis] - least;
        if (!(width > 0.0)) {
            Sort(begin, end, axis + 1);
            return;
        }
        const size_t sliceCount = (end - begin) / 4;
        const double slicesPerWidth = static_cast<double>(sliceCount - 1) / width;
        std::vector<size_t> sliceEnds(sliceCount + 1, begin);
        const auto sliceOf = [&](const Point& point) {
            return static_cast<size_t>((point[axis] - least) * slicesPerWidth);
        };
        std::for_each(first, last, [&](const Point& point) { ++sliceEnds[sliceOf(point) + 1]; });
        for (size_t slice = 1; slice <= sliceCount; ++slice)
            sliceEnds[slice] += sliceEnds[slice - 1] - begin;
        std::for_each(first, last,
                      [&](const Point& point) { spare_[sliceEnds[sliceOf(point)]++] = point; });
        std::copy(spare_.begin() + static_cast<std::ptrdiff_t>(begin),
                  spare_.begin() + static_cast<std::ptrdiff_t>(end), first);
        size_t sliceBegin = begin;
        for (size_t slice = 0; slice < sliceCount; ++slice) {
            Sort(sliceBegin, sliceEnds[slice], axis + 1);
            sliceBegin = sliceEnds[slice];
        }
    }

    std::vector<Point> points_;
    std::vector<Point> sorted_;
    std::vector<Point> spare_;
};

Task CopyAndSortTask(const Input& input, const Traffic& traffic) {
    const auto sort = std::make_shared<SliceSort>(DistinctPoints(input));
    const Task copy = CopyTask(traffic);
    Task task;
    task.run = [=] {
        copy.run();
        sort->Run();
    };
    return task;
}

Task SortTask(const Input& input) {
    const auto points = std::make_shared<std::vector<Point>>(input.points);
    const auto sorted = std::make_shared<std::vector<Point>>();
    Task task;
    task.prepare = [=] { *sorted = *points; };
    task.run = [=] { std::sort(sorted->begin(), sorted->end()); };
    return task;
}

Task StreamTask(const Input& input) {
    const auto triangles = std::make_shared<std::vector<Triangle>>(input.triangles);
    Task task;
    task.run = [=] {
        uint64_t sum = 0;
        for (const Triangle& triangle : *triangles)
            sum += triangle[0] + triangle[1] + triangle[2];
        Keep(sum);
    };
    return task;
}

Task GatherTask(const Input& input) {
    const auto points = std::make_shared<std::vector<Point>>(input.points);
    const auto triangles = std::make_shared<std::vector<Triangle>>(input.triangles);
    Task task;
    task.run = [=] {
        const Point* const pointOf = points->data();
        Point sum = {0.0, 0.0, 0.0};
        for (const Triangle& triangle : *triangles) {
            const Point& p0 = pointOf[triangle[0]];
            const Point& p1 = pointOf[triangle[1]];
            const Point& p2 = pointOf[triangle[2]];
            for (size_t axis = 0; axis < 3; ++axis)
                sum[axis] += p0[axis] + p1[axis] + p2[axis];
        }
        Keep(sum);
    };
    return task;
}

Contestant Limit(const std::string& operation, const std::string& call, const std::string& note,
                 std::function<Task(const Input&)> make) {
    Contestant limit;
    limit.operation = operation;
    limit.peer = kLimit;
    limit.call = call;
    limit.note = note;
    limit.make = std::move(make);
    return limit;
}

}  // namespace

Contestant CopyLimit(const std::string& operation, TrafficOf trafficOf) {
    return Limit(operation, "memcpy", "as many bytes as are read and written, warm pages",
                 [=](const Input& input) { return CopyTask(trafficOf(input)); });
}

Contestant CopyAndSortLimit(const std::string& operation, TrafficOf trafficOf) {
    return Limit(operation, "memcpy and sort",
                 "as many bytes as are read and written, and the distinct points sorted in slices",
                 [=](const Input& input) { return CopyAndSortTask(input, trafficOf(input)); });
}

Contestant SortLimit(const std::string& operation) {
    return Limit(operation, "std::sort", "the points of all corners, without numbers", SortTask);
}

Contestant StreamLimit(const std::string& operation) {
    return Limit(operation, "read", "the index triples, added up", StreamTask);
}

Contestant GatherLimit(const std::string& operation) {
    return Limit(operation, "gather", "three points a triangle through the index triples, added up",
                 GatherTask);
}

}  // namespace Vr::bench::peers
