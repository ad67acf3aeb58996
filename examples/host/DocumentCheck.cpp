// The layout of docs/sample-host.md once more, as a check. A hostile document must not be loaded even
// to be looked at: one wrong array number, and memory is not what it was.

#include "DocumentCheck.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "DocumentLayout.h"
#include "Failure.h"
#include "Interrupt.h"

namespace Host {

namespace {

// In front of the object count: a finding there means that this is another kind of file.
constexpr uint64_t kCountOffset = 8;

// Moves what the stream has found since the last call, for one object.
class Collector {
public:
    Collector(const Vr::CheckStream& stream, DocumentReport& report)
        : stream_(stream), report_(report) {}

    void Collect(uint64_t objectNumber) {
        const auto& findings = stream_.Result().findings;
        for (; collectedCount_ < findings.size(); ++collectedCount_)
            report_.findings.push_back({objectNumber, findings[collectedCount_]});
    }

private:
    const Vr::CheckStream& stream_;
    DocumentReport& report_;
    size_t collectedCount_ = 0;
};

struct Header {
    DWORD format = kMeshFormat;
    ULONGLONG objectCount = 0;  // 0 where there is none to believe
};

Header CheckHeader(Vr::CheckStream& stream) {
    Header header;
    DWORD magic = 0;
    if (stream.Remaining() < sizeof(magic) || !stream.Value(magic) || magic != kMagic) {
        stream.Refuse(kNoDocument);
        return header;
    }
    if (stream.Value(header.format) && header.format != kMeshFormat &&
        header.format != kObjectFormat)
        stream.Refuse(UnknownFormat(header.format));
    if (stream.Value(header.objectCount) &&
        header.objectCount > stream.Remaining() / SmallestObjectBytes(header.format))
        stream.Refuse(TooShort(header.objectCount));
    return header;
}

void RequireObject(Vr::CheckStream& stream, Vr::CheckedObject object) {
    if (object == Vr::CheckedObject::Null || object == Vr::CheckedObject::Known)
        stream.Refuse(kObjectMissing);
}

// An object of openNURBS must take all of its frame.
void CheckFramed(Vr::CheckStream& stream, DWORD kind) {
    DWORD length = 0;
    if (!stream.Value(length))
        return;
    const uint64_t begin = stream.Position();
    if (kind == kCurveKind)
        RequireObject(stream, stream.Curve());
    else if (kind == kSurfaceKind)
        RequireObject(stream, stream.Surface());
    else
        stream.Material();
    if (stream.CanGoOn() && stream.Position() - begin != length)
        stream.Refuse(kWrongFrame);
}

void CheckObject(Vr::CheckStream& stream, DWORD format) {
    DWORD kind = kMeshKind;
    if (format == kObjectFormat && !stream.Value(kind))
        return;
    if (kind == kMeshKind)
        RequireObject(stream, stream.Object());
    else if (kind == kCurveKind || kind == kSurfaceKind || kind == kMaterialKind)
        CheckFramed(stream, kind);
    else
        stream.Refuse(UnknownKind(kind));
}

void CheckEnd(Vr::CheckStream& stream) {
    DWORD endMark = 0;
    if (stream.Value(endMark) && (endMark != kEndMark || stream.Remaining() > 0))
        stream.Refuse(kWrongEnd);
}

std::string ReasonOf(const DocumentFinding& finding) {
    const bool isOtherFile =
        finding.finding.code == Vr::CheckCode::HostContent && finding.finding.offset < kCountOffset;
    return isOtherFile ? finding.finding.text : "damaged document: " + Describe(finding);
}

}  // namespace

DocumentReport CheckDocument(CFile& file) {
    file.SeekToBegin();
    Vr::CheckStream stream(file);
    DocumentReport report;
    Collector collector(stream, report);
    const Header header = CheckHeader(stream);
    report.objectCount = header.objectCount;
    collector.Collect(0);
    for (ULONGLONG number = 1; number <= header.objectCount && stream.CanGoOn(); ++number) {
        ThrowIfInterrupted();
        CheckObject(stream, header.format);
        collector.Collect(number);
    }
    CheckEnd(stream);
    collector.Collect(0);
    report.summary = stream.Result();
    report.summary.findings.clear();
    return report;
}

std::string Describe(const DocumentFinding& finding) {
    const std::string object = finding.objectNumber > 0
                                   ? "object " + std::to_string(finding.objectNumber) + ", "
                                   : std::string();
    return object + "byte " + std::to_string(finding.finding.offset) + ": " + finding.finding.text;
}

void RequireSafe(CFile& file, const std::filesystem::path& path) {
    const DocumentReport report = CheckDocument(file);
    if (report.summary.IsSafe())
        return;
    const auto found = std::find_if(
        report.findings.begin(), report.findings.end(), [](const DocumentFinding& finding) {
            return Vr::SeverityOf(finding.finding.code) > Vr::CheckSeverity::Note;
        });
    throw Failure(path, found != report.findings.end()
                            ? ReasonOf(*found)
                            : "damaged document: too much is odd about it to say what is wrong");
}

}  // namespace Host
