// Interleaving is what a benchmark library does not offer: there, one case is over before the next
// begins, and a neighbour on the machine that comes and goes favours one of the two.

#include "peers/Runner.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include "peers/MemoryCount.h"

namespace Vr::bench::peers {

namespace {

using Clock = std::chrono::steady_clock;

struct Entry {
    Row row;
    Task task;
    Figures figures;
    int turnsLeft = 0;
};

double SecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double TimedRun(const Task& task) {
    task.prepare();
    const Clock::time_point begin = Clock::now();
    task.run();
    return SecondsSince(begin);
}

void TakeTurn(Entry& entry, double seconds) {
    // Threads of another contestant's pool may still spin for a moment.
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    const Clock::time_point begin = Clock::now();
    do {
        entry.row.seconds.push_back(TimedRun(entry.task));
    } while (SecondsSince(begin) < seconds);
    --entry.turnsLeft;
}

// Returns what the run took. Its time does not count.
double FirstRun(Entry& entry) {
    entry.task.prepare();
    CountMemory(true);
    const Clock::time_point begin = Clock::now();
    entry.task.run();
    const double seconds = SecondsSince(begin);
    entry.row.peakBytes = CountMemory(false);
    entry.figures = entry.task.result();
    return seconds;
}

// Who is slow has fewer turns, maybe none: there warmth makes no difference, so the first run counts.
void FirstRuns(std::vector<Entry>& entries, const Settings& settings) {
    double ourSeconds = 0.0;
    for (Entry& entry : entries) {
        const double seconds = FirstRun(entry);
        if (entry.row.contestant->peer == kOurs)
            ourSeconds = seconds;
        const bool isSlow = seconds > settings.slowSeconds && seconds > 10.0 * ourSeconds;
        entry.turnsLeft = isSlow ? settings.repetitions / 4 : settings.repetitions;
        if (isSlow)
            entry.row.seconds.push_back(seconds);
    }
}

void TakeTurns(std::vector<Entry>& entries, const Settings& settings) {
    for (size_t repetition = 0; repetition < static_cast<size_t>(settings.repetitions);
         ++repetition) {
        for (size_t turn = 0; turn < entries.size(); ++turn) {
            Entry& entry = entries[(turn + repetition) % entries.size()];
            if (entry.turnsLeft > 0)
                TakeTurn(entry, settings.turnSeconds);
        }
    }
}

std::string DifferenceOf(const Figures& ours, const Figures& theirs) {
    for (const Figure& their : theirs) {
        for (const Figure& our : ours) {
            if (our.name != their.name)
                continue;
            const double allowed = std::max(our.tolerance, their.tolerance) *
                                   std::max(std::fabs(our.value), std::fabs(their.value));
            if (!(std::fabs(our.value - their.value) <= allowed))
                return fmt::format("{} is {:.17g}, ours {:.17g}", our.name, their.value, our.value);
        }
    }
    return "";
}

bool TakesPart(const Contestant& contestant, const Operation& operation, const Input& input,
               int threadCount) {
    return contestant.operation == operation.name &&
           (threadCount == 1 ? contestant.isSequential : contestant.isParallel) &&
           input.triangleCount <= contestant.mostTriangles;
}

std::vector<Entry> EntriesOf(const Contest& contest, const Operation& operation,
                             const std::string& meshName, const Input& input, int threadCount) {
    std::vector<Entry> entries;
    for (const Contestant& contestant : contest.contestants) {
        if (!TakesPart(contestant, operation, input, threadCount))
            continue;
        Entry entry;
        entry.row.operation = operation.name;
        entry.row.mesh = meshName;
        entry.row.triangleCount = input.triangleCount;
        entry.row.threadCount = threadCount;
        entry.row.contestant = &contestant;
        try {
            entry.task = contestant.make(input);
        } catch (const CannotHold& reason) {
            fmt::print(stderr, "{} {}, {}: {}\n", contestant.peer, contestant.call, meshName,
                       reason.what());
            continue;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace

std::vector<Row> RunOperation(const Contest& contest, const Operation& operation,
                              const PlainMesh& mesh, int threadCount, const Settings& settings) {
    for (const auto& useThreads : contest.useThreads)
        useThreads(threadCount);
    const Input input = operation.input(mesh);
    std::vector<Entry> entries = EntriesOf(contest, operation, mesh.name, input, threadCount);
    FirstRuns(entries, settings);
    TakeTurns(entries, settings);

    std::vector<Row> rows;
    for (Entry& entry : entries) {
        std::sort(entry.row.seconds.begin(), entry.row.seconds.end());
        entry.row.difference = DifferenceOf(entries.front().figures, entry.figures);
        rows.push_back(std::move(entry.row));
    }
    return rows;
}

}  // namespace Vr::bench::peers
