#include "support/LocalFileWriter.h"

#include "LocalFileOutput.h" // of the target's folder
#include "base/Hex.h"
#include "support/PartFileRules.h"

#include <atomic>
#include <random>

namespace {

std::string Stem(std::uint64_t number) {
    std::string name(PartFileRules::kBeginning);
    for (int shift = 60; shift >= 0; shift -= 4) {
        name += base::kHexDigits[(number >> shift) & 0xF];
    }
    return name;
}

/// No part of the kind that the call is for.
std::error_code NotOpen() {
    return std::make_error_code(std::errc::bad_file_descriptor);
}

} // namespace

std::string PartFileRules::UniqueStem() {
    // Counted up from one random number: to ask for another takes longer than to make the file.
    static std::atomic<std::uint64_t> next = [] {
        std::random_device random;
        return (std::uint64_t{random()} << 32) | random();
    }();
    return Stem(next++);
}

std::string PartFileRules::StemFor(std::string_view destination) {
    std::uint64_t hash = 0xCBF29CE484222325; // FNV-1a
    for (const char c : destination) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    }
    return Stem(hash);
}

LocalFileWriter::LocalFileWriter() = default;

LocalFileWriter::~LocalFileWriter() {
    Abandon();
}

std::error_code LocalFileWriter::Open(const std::filesystem::path& destination, Part part) {
    Abandon();
    auto output = std::make_unique<LocalFileOutput>();
    const std::error_code reason = output->Open(destination, part);
    if (!reason) {
        m_output = std::move(output);
    }
    return reason;
}

std::error_code LocalFileWriter::Write(std::string_view bytes) {
    return m_output ? m_output->Write(bytes) : NotOpen();
}

std::error_code LocalFileWriter::Finish(bool durable) {
    const std::error_code reason = m_output ? m_output->Finish(durable) : NotOpen();
    if (!reason) {
        m_output.reset();
    }
    return reason;
}

void LocalFileWriter::Abandon() noexcept {
    if (m_output && !IsDirect()) {
        m_output->Part().Remove();
    }
    m_output.reset();
}

std::uint64_t LocalFileWriter::Size() const noexcept {
    return m_output ? m_output->Part().Size() : 0;
}

std::error_code LocalFileWriter::Truncate(std::uint64_t size) {
    return m_output && !IsDirect() ? m_output->Part().Truncate(size) : NotOpen();
}

std::string LocalFileWriter::ReadRecord() const {
    return m_output ? m_output->Part().ReadRecord() : std::string();
}

std::error_code LocalFileWriter::WriteRecord(std::string_view record) {
    if (!m_output || !m_output->Part().IsResumable()) {
        return NotOpen();
    }
    if (record.size() > PartFileRules::kLongestRecord) {
        return std::make_error_code(std::errc::file_too_large);
    }
    return m_output->Part().WriteRecord(record);
}

void LocalFileWriter::Keep() noexcept {
    if (!m_output || !m_output->Part().IsResumable()) {
        Abandon();
        return;
    }
    // An attempt to finish it may have opened it to others.
    m_output->Part().Protect();
    m_output.reset();
}

bool LocalFileWriter::IsDirect() const noexcept {
    return m_output && m_output->IsDirect();
}

std::string LocalFileWriter::PartName() {
    return PartFileRules::UniqueStem() + PartFileRules::kPartEnding;
}
