#include "SorvaneMac/Report/ZipWriter.h"

#include <utility>

#include "SorvaneMac/Report/CRC32.h"

namespace sorvane {
namespace {

constexpr std::uint32_t localSignature = 0x04034B50;
constexpr std::uint32_t centralSignature = 0x02014B50;
constexpr std::uint32_t endSignature = 0x06054B50;
constexpr std::uint32_t version = 20;
constexpr std::uint32_t noFlags = 0;
constexpr std::uint32_t stored = 0;

}  // namespace

void ZipWriter::addFile(std::string_view name, std::string_view data) {
    const Entry entry{.name = std::string(name),
                      .crc = CRC32::checksum(data),
                      .size = static_cast<std::uint32_t>(data.size()),
                      .offset = static_cast<std::uint32_t>(output_.size())};
    output_.reserve(output_.size() + data.size() + 256);
    append32(localSignature);
    appendDescription(entry);
    append(name);
    append(data);
    entries_.push_back(entry);
}

std::vector<std::uint8_t> ZipWriter::finish() {
    const auto directoryOffset = static_cast<std::uint32_t>(output_.size());
    for (const Entry& entry : entries_) {
        appendCentralRecord(entry);
    }
    appendEndRecord(directoryOffset);
    entries_.clear();
    return std::exchange(output_, {});
}

void ZipWriter::appendDescription(const Entry& entry) {
    append16(version);
    append16(noFlags);
    append16(stored);
    append16(dosTime_);
    append16(dosDate_);
    append32(entry.crc);
    append32(entry.size);
    append32(entry.size);
    append16(static_cast<std::uint32_t>(entry.name.size()));
    append16(0);  // extra field
}

void ZipWriter::appendCentralRecord(const Entry& entry) {
    append32(centralSignature);
    append16(version);
    appendDescription(entry);
    append16(0);  // comment
    append16(0);  // disk
    append16(0);  // internal attributes
    append32(0);  // external attributes
    append32(entry.offset);
    append(entry.name);
}

void ZipWriter::appendEndRecord(std::uint32_t directoryOffset) {
    const auto count = static_cast<std::uint32_t>(entries_.size());
    const auto directorySize = static_cast<std::uint32_t>(output_.size()) - directoryOffset;
    append32(endSignature);
    append16(0);  // this disk
    append16(0);  // disk of the directory
    append16(count);
    append16(count);
    append32(directorySize);
    append32(directoryOffset);
    append16(0);  // comment
}

void ZipWriter::append(std::string_view text) {
    output_.insert(output_.end(), text.begin(), text.end());
}

void ZipWriter::append16(std::uint32_t value) {
    output_.push_back(static_cast<std::uint8_t>(value & 0xFFU));
    output_.push_back(static_cast<std::uint8_t>(value >> 8U & 0xFFU));
}

void ZipWriter::append32(std::uint32_t value) {
    append16(value & 0xFFFFU);
    append16(value >> 16U);
}

}  // namespace sorvane
