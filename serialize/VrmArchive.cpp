// Schema cache, array tables and observer on top of CArchive.

#include "serialize/VrmArchive.h"

#include "serialize/VrwSerializeObserver.h"

namespace Vr {

namespace {
constexpr UINT kUnknownSchema = 0xFFFFFFFF;
}

VrmArchive::VrmArchive(CFile* file, UINT mode, int bufferSize, void* buffer)
    : CArchive(file, mode, bufferSize, buffer) {}

VrmArchive::VrmArchive(const VrmArchive& source)
    : CArchive(source),
      schema_(source.schema_),
      numberOfWrittenArray_(source.numberOfWrittenArray_),
      readArrayOfNumber_(source.readArrayOfNumber_),
      observer_(source.observer_) {
    // MFC's protected copy constructor leaves these as it finds them; the destructor needs them.
    m_nMode = CArchive::store;
    m_bUserBuf = TRUE;
    m_nBufSize = 0;
    m_pFile = nullptr;
    m_lpBufCur = nullptr;
    m_lpBufMax = nullptr;
    m_lpBufStart = nullptr;
    m_nMapCount = 0;
    m_pStoreMap = nullptr;
    m_pSchemaMap = nullptr;
}

VrmArchive& VrmArchive::operator=(const VrmArchive& source) {
    schema_ = source.schema_;
    if (this != &source) {
        numberOfWrittenArray_ = source.numberOfWrittenArray_;
        readArrayOfNumber_ = source.readArrayOfNumber_;
    }
    observer_ = source.observer_;
    return *this;
}

VrmArchive::~VrmArchive() = default;

void VrmArchive::SetObserver(VrwSerializeObserver* observer) {
    observer_ = observer;
}

UINT VrmArchive::GetVrmObjectSchema() {
    if (schema_ == kUnknownSchema)
        schema_ = GetObjectSchema();
    return schema_;
}

void VrmArchive::CommunicateToObserver() {
    if (!observer_ || !IsLoading())
        return;
    if (observer_->IsCanceled())
        AfxThrowUserException();
    const ULONGLONG length = GetFile()->GetLength();
    const ULONGLONG position = GetFile()->GetPosition();
    observer_->OnProgress(position, length);
}

}  // namespace Vr
