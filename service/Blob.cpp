#include "service/Blob.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace brevint::service {

namespace {

class MemoryBlob final : public Blob {
public:
    explicit MemoryBlob(std::string content) : m_content(std::move(content)) {}

    std::uint64_t Size() const override { return m_content.size(); }

    void Read(std::uint64_t offset, char* target, std::size_t count) const override {
        std::memcpy(target, m_content.data() + offset, count);
    }

private:
    const std::string m_content;
};

class FileBlob final : public Blob {
public:
    FileBlob(std::shared_ptr<const TemporaryFile> file, std::uint64_t size)
        : m_file(std::move(file)), m_size(size) {}

    std::uint64_t Size() const override { return m_size; }

    void Read(std::uint64_t offset, char* target, std::size_t count) const override {
        m_file->Read(offset, target, count);
    }

private:
    const std::shared_ptr<const TemporaryFile> m_file;
    const std::uint64_t m_size;
};

class PatternBlob final : public Blob {
public:
    explicit PatternBlob(std::uint64_t size) : m_size(size) {}

    std::uint64_t Size() const override { return m_size; }

    void Read(std::uint64_t offset, char* target, std::size_t count) const override {
        // The pattern begins again after 64 KiB.
        static const std::string period = [] {
            std::string bytes;
            for (unsigned i = 0; i < 256 * 256; ++i) {
                bytes += static_cast<char>(static_cast<unsigned char>(i * 31 + i / 256));
            }
            return bytes;
        }();
        while (count > 0) {
            const std::size_t step = period.copy(target, count, offset % period.size());
            offset += step;
            target += step;
            count -= step;
        }
    }

private:
    const std::uint64_t m_size;
};

} // namespace

std::shared_ptr<const Blob> MakeBlob(std::string content) {
    return std::make_shared<MemoryBlob>(std::move(content));
}

std::shared_ptr<const Blob> MakeBlob(std::shared_ptr<const TemporaryFile> file,
                                     std::uint64_t size) {
    return std::make_shared<FileBlob>(std::move(file), size);
}

std::shared_ptr<const Blob> MakePatternBlob(std::uint64_t size) {
    return std::make_shared<PatternBlob>(size);
}

} // namespace brevint::service
