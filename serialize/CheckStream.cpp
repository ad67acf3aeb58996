// The public side of the check: the table of codes, and the steps of a host's own layout.

#include "serialize/CheckStream.h"

#include <algorithm>
#include <iterator>

#include "serialize/detail/CheckContext.h"
#include "serialize/detail/MaterialCheck.h"
#include "serialize/detail/ObjectCheck.h"
#include "serialize/detail/RecordCheck.h"

namespace Vr {

namespace detail {

/// The bytes of one check and what reads them.
class StreamChecker {
public:
    StreamChecker(CheckSource source, const CheckLimits& limits)
        : context(std::move(source), limits), objects(context) {}

    CheckContext context;
    ObjectCheck objects;
};

}  // namespace detail

namespace {

struct CodeTraits {
    CheckCode code;
    CheckSeverity severity;
    const char* name;
};

constexpr CodeTraits kCodes[] = {
    {CheckCode::EndOfStream, CheckSeverity::Invalid, "end-of-stream"},
    {CheckCode::ClassName, CheckSeverity::Invalid, "class-name"},
    {CheckCode::UnknownClass, CheckSeverity::Unsafe, "unknown-class"},
    {CheckCode::WrongClass, CheckSeverity::Invalid, "wrong-class"},
    {CheckCode::ObjectNumber, CheckSeverity::Invalid, "object-number"},
    {CheckCode::ClassNumber, CheckSeverity::Invalid, "class-number"},
    {CheckCode::NewerSchema, CheckSeverity::Note, "newer-schema"},
    {CheckCode::MixedSchemas, CheckSeverity::Note, "mixed-schemas"},
    {CheckCode::PresenceByte, CheckSeverity::Note, "presence-byte"},
    {CheckCode::ArrayNumber, CheckSeverity::Note, "array-number"},
    {CheckCode::ElementType, CheckSeverity::Unsafe, "element-type"},
    {CheckCode::FormByte, CheckSeverity::Note, "form-byte"},
    {CheckCode::ElementCount, CheckSeverity::Invalid, "element-count"},
    {CheckCode::UnnoticedCount, CheckSeverity::Unsafe, "unnoticed-count"},
    {CheckCode::VertexNumber, CheckSeverity::Suspicious, "vertex-number"},
    {CheckCode::NormalNumber, CheckSeverity::Suspicious, "normal-number"},
    {CheckCode::ColorNumber, CheckSeverity::Suspicious, "color-number"},
    {CheckCode::NormalListLength, CheckSeverity::Suspicious, "normal-list-length"},
    {CheckCode::ColorListLength, CheckSeverity::Suspicious, "color-list-length"},
    {CheckCode::StringLength, CheckSeverity::Invalid, "string-length"},
    {CheckCode::HostContent, CheckSeverity::Invalid, "host-content"},
    {CheckCode::RecordFrame, CheckSeverity::Unsafe, "record-frame"},
    {CheckCode::RecordClass, CheckSeverity::Unsafe, "record-class"},
    {CheckCode::UnknownRecord, CheckSeverity::Note, "unknown-record"},
    {CheckCode::NestedRecord, CheckSeverity::Unsafe, "nested-record"},
    {CheckCode::MaterialFields, CheckSeverity::Unsafe, "material-fields"},
    {CheckCode::ObjectLimit, CheckSeverity::Unsafe, "object-limit"},
    {CheckCode::ArrayLimit, CheckSeverity::Unsafe, "array-limit"},
};

const CodeTraits& TraitsOf(CheckCode code) {
    static constexpr CodeTraits kUnknown = {CheckCode(), CheckSeverity::Unsafe, "unknown-code"};
    const auto* const found =
        std::find_if(std::begin(kCodes), std::end(kCodes),
                     [code](const CodeTraits& traits) { return traits.code == code; });
    return found != std::end(kCodes) ? *found : kUnknown;
}

CheckReport CheckRow(CheckStream& stream) {
    while (stream.CanGoOn() && stream.Remaining() > 0)
        stream.Object();
    return stream.Result();
}

}  // namespace

const char* NameOf(CheckCode code) {
    return TraitsOf(code).name;
}

const char* NameOf(CheckSeverity severity) {
    switch (severity) {
        case CheckSeverity::Note:
            return "note";
        case CheckSeverity::Suspicious:
            return "suspicious";
        case CheckSeverity::Invalid:
            return "invalid";
        case CheckSeverity::Unsafe:
            return "unsafe";
    }
    return "unknown-severity";
}

CheckSeverity SeverityOf(CheckCode code) {
    return TraitsOf(code).severity;
}

CheckReport CheckDocument(CFile& file, const CheckLimits& limits) {
    const ULONGLONG begin = file.GetPosition();
    CheckStream stream(file, limits);
    CheckReport report = CheckRow(stream);
    file.Seek(static_cast<LONGLONG>(begin), CFile::begin);
    return report;
}

CheckReport CheckDocument(const void* bytes, size_t byteCount, const CheckLimits& limits) {
    CheckStream stream(bytes, byteCount, limits);
    return CheckRow(stream);
}

CheckStream::CheckStream(CFile& file, const CheckLimits& limits)
    : checker_(new detail::StreamChecker(detail::CheckSource(file), limits)) {}

CheckStream::CheckStream(const void* bytes, size_t byteCount, const CheckLimits& limits)
    : checker_(new detail::StreamChecker(
          detail::CheckSource(static_cast<const BYTE*>(bytes), byteCount), limits)) {}

CheckStream::~CheckStream() = default;

CheckedObject CheckStream::Object(const CRuntimeClass* wanted) {
    return checker_->objects.Object(wanted);
}

bool CheckStream::Bytes(void* target, size_t byteCount) {
    return checker_->context.Read(target, byteCount);
}

bool CheckStream::Skip(uint64_t byteCount) {
    return checker_->context.Skip(byteCount);
}

bool CheckStream::WideString() {
    constexpr uint64_t kUnitBytes = 2;
    detail::CheckContext& context = checker_->context;
    uint64_t length = 0;
    if (!context.Read(length))
        return false;
    if (length > context.Remaining() / kUnitBytes)
        return context.Stop(CheckCode::StringLength, context.LastOffset(), [&] {
            return "a string of " + std::to_string(length) + " characters does not fit the " +
                   std::to_string(context.Remaining()) + " bytes that are left";
        });
    return context.Skip(length * kUnitBytes);
}

CheckedObject CheckStream::Curve() {
    return detail::CheckRecord(checker_->context, "ON_Curve");
}

CheckedObject CheckStream::Surface() {
    return detail::CheckRecord(checker_->context, "ON_Surface");
}

bool CheckStream::Material() {
    return detail::CheckMaterial(checker_->context);
}

void CheckStream::Report(std::string text) {
    detail::CheckContext& context = checker_->context;
    context.Report(CheckCode::HostContent, context.LastOffset(), [&] { return std::move(text); });
}

void CheckStream::Refuse(std::string text) {
    detail::CheckContext& context = checker_->context;
    context.Stop(CheckCode::HostContent, context.LastOffset(), [&] { return std::move(text); });
}

bool CheckStream::CanGoOn() const {
    return checker_->context.CanGoOn();
}

uint64_t CheckStream::Position() const {
    return checker_->context.Position();
}

uint64_t CheckStream::Remaining() const {
    return checker_->context.Remaining();
}

const CheckReport& CheckStream::Result() const {
    return checker_->context.Result();
}

}  // namespace Vr
