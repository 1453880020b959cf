#include "bench/bare_files.h"

#include <fstream>
#include <stdexcept>

namespace {

enum Command : uint8_t {
    kOpen = 2,
    kClose = 3,
    kRead = 4,
    kWrite = 5,
    kOpenDir = 11,
    kReadDir = 12,
    kCloseDir = 13,
    kStat = 15,
    kStatFs = 19,
};

std::vector<uint8_t> PathRequest(Command eCommand, std::initializer_list<uint32_t> values,
                                 const std::string& sPath) {
    return BareLine::Request(eCommand, values, sPath.c_str(), sPath.size() + 1);
}

} // namespace

void BareStatus(BareLine& line, const std::string& sPath) {
    constexpr size_t kStatusSize = 32;
    if (line.Exchange(PathRequest(kStat, {}, sPath)).size() != kStatusSize)
        throw std::runtime_error("no status");
}

void BareListing(BareLine& line, const std::string& sFolder, size_t iEntries) {
    constexpr size_t kNameOffset = 40;
    const uint32_t iFolder = BareLine::ValueAt(line.Exchange(PathRequest(kOpenDir, {}, sFolder)), 4);
    uint32_t iNumber = 1;
    while (line.Exchange(BareLine::Request(kReadDir, {iFolder, iNumber})).at(kNameOffset) != 0)
        ++iNumber;
    line.Exchange(BareLine::Request(kCloseDir, {iFolder}));
    if (iNumber != iEntries + 1)
        throw std::runtime_error("the listing is incomplete");
}

void BareDownload(BareLine& line, const std::string& sPath, const std::string& sLocal) {
    const uint32_t iFile = BareLine::ValueAt(line.Exchange(PathRequest(kOpen, {0, 0444}, sPath)), 4);
    std::ofstream target(sLocal, std::ios::binary);
    uint32_t iOffset = 0;
    uint32_t iCount = kReadBlock;
    while (iCount == kReadBlock) {
        const auto& response = line.Exchange(BareLine::Request(kRead, {iFile, kReadBlock, iOffset}));
        iCount = BareLine::ValueAt(response, 12);
        target.write(reinterpret_cast<const char*>(response.data()) + 20, iCount);
        iOffset += iCount;
    }
    line.Exchange(BareLine::Request(kClose, {iFile}));
}

void BareUpload(BareLine& line, const std::string& sLocal, const std::string& sPath) {
    line.Exchange(PathRequest(kStatFs, {}, ""));
    const uint32_t iFile = BareLine::ValueAt(line.Exchange(PathRequest(kOpen, {0x241, 0666}, sPath)), 4);
    std::ifstream source(sLocal, std::ios::binary);
    char aBlock[kWriteBlock];
    for (uint32_t iOffset = 0; source.read(aBlock, sizeof aBlock); iOffset += kWriteBlock)
        line.Exchange(BareLine::Request(kWrite, {iFile, iOffset}, aBlock, sizeof aBlock));
    line.Exchange(BareLine::Request(kClose, {iFile}));
}
