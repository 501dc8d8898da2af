#include "service/Blob.h"

#include <cstring>

namespace brevint::service {

namespace {

class MemoryBlob final : public Blob {
public:
    MemoryBlob(std::string owner, std::size_t offset, std::size_t count)
        : m_owner(std::move(owner)), m_offset(offset), m_count(count) {}

    std::uint64_t Size() const override { return m_count; }

    void Read(std::uint64_t offset, char* target, std::size_t count) const override {
        std::memcpy(target, m_owner.data() + m_offset + offset, count);
    }

private:
    std::string m_owner;
    std::size_t m_offset;
    std::size_t m_count;
};

class PatternBlob final : public Blob {
public:
    explicit PatternBlob(std::uint64_t size) : m_size(size) {}

    std::uint64_t Size() const override { return m_size; }

    void Read(std::uint64_t offset, char* target, std::size_t count) const override {
        for (std::size_t k = 0; k < count; ++k) {
            const std::uint64_t i = offset + k;
            target[k] = static_cast<char>(static_cast<unsigned char>(i * 31 + i / 256));
        }
    }

private:
    std::uint64_t m_size;
};

} // namespace

std::shared_ptr<const Blob> MakeBlob(std::string owner, std::size_t offset, std::size_t count) {
    return std::make_shared<MemoryBlob>(std::move(owner), offset, count);
}

std::shared_ptr<const Blob> MakeBlob(std::string content) {
    const std::size_t size = content.size();
    return MakeBlob(std::move(content), 0, size);
}

std::shared_ptr<const Blob> MakePatternBlob(std::uint64_t size) {
    return std::make_shared<PatternBlob>(size);
}

} // namespace brevint::service
