#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sorvane {

/// Builds a ZIP archive in memory, every entry stored uncompressed.
///
/// Input      names in UTF-8, at most 65535 bytes; fewer than 65536 entries; less than 4 GB in all
class ZipWriter {
public:
    void addFile(std::string_view name, std::string_view data);

    /// The whole archive; the writer is spent afterwards.
    std::vector<std::uint8_t> finish();

private:
    struct Entry {
        std::string name;
        std::uint32_t crc = 0;
        std::uint32_t size = 0;
        std::uint32_t offset = 0;
    };

    /// What the local and the central record share.
    void appendDescription(const Entry& entry);
    void appendCentralRecord(const Entry& entry);
    void appendEndRecord(std::uint32_t directoryOffset);
    void append(std::string_view text);
    void append16(std::uint32_t value);
    void append32(std::uint32_t value);

    std::vector<std::uint8_t> output_;
    std::vector<Entry> entries_;
    /// Midnight of 1 January 1980: the same report gives the same bytes.
    std::uint16_t dosTime_ = 0;
    std::uint16_t dosDate_ = 0x0021;
};

}  // namespace sorvane
