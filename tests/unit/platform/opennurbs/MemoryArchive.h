/// An archive over a byte array, like an in-memory file, that notes what was asked of it.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "serialize/detail/OpenNurbsInterface.h"

namespace kerneltest {

class MemoryArchive : public Vr::detail::OpenNurbsArchive {
public:
    explicit MemoryArchive(ON::archive_mode mode, std::vector<unsigned char> content = {},
                           int version = 0)
        : Vr::detail::OpenNurbsArchive(mode), bytes(std::move(content)) {
        SetArchive3dmVersion(version);
    }

    size_t CurrentPosition() const override {
        calls.push_back("tell");
        return position;
    }
    bool SeekFromCurrentPosition(int offset) override {
        calls.push_back("seek_cur " + std::to_string(offset));
        const long long target = static_cast<long long>(position) + offset;
        if (target < 0) {
            return false;
        }
        position = static_cast<size_t>(target);
        return true;
    }
    bool SeekFromStart(size_t target) override {
        calls.push_back("seek_start " + std::to_string(target));
        position = target;
        return true;
    }
    bool AtEnd() const override {
        calls.push_back("at_end");
        return position >= bytes.size();
    }

    std::vector<unsigned char> bytes;
    size_t position = 0;
    mutable std::vector<std::string> calls;

protected:
    size_t Read(size_t byteCount, void* destination) override {
        const size_t available = position < bytes.size() ? bytes.size() - position : 0;
        const size_t delivered = std::min(byteCount, available);
        calls.push_back("read " + std::to_string(byteCount) + " " + std::to_string(delivered));
        if (delivered > 0) {
            std::memcpy(destination, bytes.data() + position, delivered);
        }
        position += delivered;
        return delivered;
    }
    size_t Write(size_t byteCount, const void* source) override {
        calls.push_back("write " + std::to_string(byteCount));
        if (position + byteCount > bytes.size()) {
            bytes.resize(position + byteCount);
        }
        std::memcpy(bytes.data() + position, source, byteCount);
        position += byteCount;
        return byteCount;
    }
    bool Flush() override {
        calls.push_back("flush");
        return true;
    }
};

}  // namespace kerneltest
