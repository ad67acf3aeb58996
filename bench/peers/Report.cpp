// Times are told as the least, the median and the quartiles: the least is what the machine can do, the
// others say how much its neighbours disturbed.

#include "peers/Report.h"

#include <fmt/format.h>
#include <sys/utsname.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace Vr::bench::peers {

namespace {

double NsAt(const Row& row, double part) {
    const auto place = static_cast<size_t>(part * static_cast<double>(row.seconds.size() - 1));
    return row.seconds[place] * 1e9 / static_cast<double>(row.triangleCount);
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char letter : text) {
        if (letter == '"' || letter == '\\')
            quoted += '\\';
        quoted += letter;
    }
    return quoted + "\"";
}

// What follows the colon in the first line of the file that begins with `key`.
std::string ValueIn(const std::string& path, const std::string& key) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.rfind(key, 0) == 0 && line.find(':') != std::string::npos)
            return line.substr(line.find_first_not_of(" \t", line.find(':') + 1));
    }
    return "unknown";
}

std::string MachineJson() {
    utsname system = {};
    uname(&system);
    const char* const heap = std::getenv("VERIDANE_BENCH_HEAP");
    return fmt::format(
        "{{\"processor\": {}, \"threads\": {}, \"memory\": {}, \"cache\": {}, \"system\": {}, "
        "\"compiler\": {}, \"heap\": {}}}",
        Quoted(ValueIn("/proc/cpuinfo", "model name")), std::thread::hardware_concurrency(),
        Quoted(ValueIn("/proc/meminfo", "MemTotal")),
        Quoted(ValueIn("/proc/cpuinfo", "cache size")),
        Quoted(fmt::format("{} {} {}", system.sysname, system.release, system.machine)),
        Quoted(
#if defined(__clang__)
            "clang " __clang_version__
#else
            "g++ " __VERSION__
#endif
            ),
        Quoted(heap ? heap : "warm"));
}

std::string RowJson(const Row& row) {
    return fmt::format(
        "{{\"operation\": {}, \"mesh\": {}, \"triangles\": {}, \"threads\": {}, \"peer\": {}, "
        "\"call\": {}, \"note\": {}, \"comparable\": {}, \"runs\": {}, \"min\": {:.5g}, \"q1\": "
        "{:.5g}, "
        "\"median\": {:.5g}, \"q3\": {:.5g}, \"bytes\": {:.5g}, \"difference\": {}}}",
        Quoted(row.operation), Quoted(row.mesh), row.triangleCount, row.threadCount,
        Quoted(row.contestant->peer), Quoted(row.contestant->call), Quoted(row.contestant->note),
        row.contestant->isComparable, row.seconds.size(), NsAt(row, 0.0), NsAt(row, 0.25),
        NsAt(row, 0.5), NsAt(row, 0.75), row.peakBytes / static_cast<double>(row.triangleCount),
        Quoted(row.difference));
}

}  // namespace

std::string TableOf(const Operation& operation, const std::vector<Row>& rows) {
    if (rows.empty())
        return "";
    std::string table = fmt::format(
        "### {}, {}, {} thread{}\n\n"
        "| who | call | least | median | quartiles | ours / this | bytes | less or more |\n"
        "|---|---|--:|--:|--:|--:|--:|---|\n",
        operation.title, rows.front().mesh, rows.front().threadCount,
        rows.front().threadCount == 1 ? "" : "s");
    const double ours = NsAt(rows.front(), 0.0);
    for (const Row& row : rows) {
        const double least = NsAt(row, 0.0);
        table += fmt::format(
            "| {} | {} | {:.2f}{} | {:.2f} | {:.2f} to {:.2f} | {:.2f} | {:.0f} | {} |\n",
            row.contestant->peer, row.contestant->call, least,
            NsAt(row, 0.5) > 1.15 * least ? " ~" : "", NsAt(row, 0.5), NsAt(row, 0.25),
            NsAt(row, 0.75), ours / least, row.peakBytes / static_cast<double>(row.triangleCount),
            row.contestant->note);
    }
    for (const Row& row : rows)
        if (!row.difference.empty())
            table += fmt::format("\ndiffers: {} {}: {}\n", row.contestant->peer,
                                 row.contestant->call, row.difference);
    return table;
}

void WriteJson(const std::string& path, const std::string& label, const Contest& contest,
               const Settings& settings, const std::vector<Row>& rows) {
    std::ofstream file(path);
    file << "{\"label\": " << Quoted(label) << ",\n\"machine\": " << MachineJson()
         << ",\n\"repetitions\": " << settings.repetitions << ",\n\"versions\": {";
    const char* separator = "";
    for (const auto& [peer, version] : contest.versionOf) {
        file << separator << Quoted(peer) << ": " << Quoted(version);
        separator = ", ";
    }
    file << "},\n\"titles\": {";
    separator = "";
    for (const Operation& operation : contest.operations) {
        file << separator << Quoted(operation.name) << ": " << Quoted(operation.title);
        separator = ", ";
    }
    file << "},\n\"rows\": [";
    separator = "\n";
    for (const Row& row : rows) {
        file << separator << RowJson(row);
        separator = ",\n";
    }
    file << "\n]}\n";
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

}  // namespace Vr::bench::peers
