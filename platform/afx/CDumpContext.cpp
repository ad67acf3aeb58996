// Values are printed as text, straight to the file.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "AfxFile.h"
#include "AfxString.h"

CDumpContext::CDumpContext(CFile* file) : file_(file) {}

CDumpContext& CDumpContext::operator<<(LPCSTR text) {
    if (text == nullptr) {
        text = "NULL";
    }
    if (file_ != nullptr) {
        file_->Write(text, static_cast<UINT>(std::strlen(text)));
    }
    return *this;
}

CDumpContext& CDumpContext::operator<<(LPCWSTR text) {
    if (text == nullptr) {
        return *this << "NULL";
    }
    std::string printable;
    for (; *text != L'\0'; ++text) {
        printable += static_cast<std::uint32_t>(*text) < 0x7F ? static_cast<char>(*text) : '?';
    }
    return *this << printable.c_str();
}

CDumpContext& CDumpContext::operator<<(int number) {
    return *this << std::to_string(number).c_str();
}
CDumpContext& CDumpContext::operator<<(unsigned int number) {
    return *this << std::to_string(number).c_str();
}
CDumpContext& CDumpContext::operator<<(long number) {
    return *this << std::to_string(number).c_str();
}
CDumpContext& CDumpContext::operator<<(unsigned long number) {
    return *this << std::to_string(number).c_str();
}
CDumpContext& CDumpContext::operator<<(long long number) {
    return *this << std::to_string(number).c_str();
}
CDumpContext& CDumpContext::operator<<(unsigned long long number) {
    return *this << std::to_string(number).c_str();
}
CDumpContext& CDumpContext::operator<<(double number) {
    char text[32];
    std::snprintf(text, sizeof(text), "%g", number);
    return *this << text;
}

CDumpContext& CDumpContext::operator<<(const CObject* object) {
    if (object == nullptr) {
        return *this << "NULL";
    }
    object->Dump(*this);
    return *this;
}

void CDumpContext::Flush() {
    if (file_ != nullptr) {
        file_->Flush();
    }
}
