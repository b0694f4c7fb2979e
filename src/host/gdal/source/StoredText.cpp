#include "host/gdal/source/StoredText.h"

#include "host/gdal/source/Interruption.h"

#include <vector>

namespace halvane::host::gdal {

namespace {

constexpr std::string_view sSeparators = " \t\r\n\x1E";

void takeUnlessBlank(std::string_view sRecord, const std::function<void(std::string_view)>& take) {
    if (sRecord.find_first_not_of(sSeparators) != std::string_view::npos)
        take(sRecord);
}

} // namespace

void readBlocks(const std::string& sPath, const std::function<void(std::string_view)>& take) {
    constexpr std::size_t nBlock = 65536;
    const FilePtr pFile(VSIFOpenL(sPath.c_str(), "rb"));
    std::vector<char> block(nBlock);
    std::size_t nRead = pFile == nullptr ? 0 : nBlock;
    while (nRead == nBlock) {
        endIfInterrupted();
        nRead = VSIFReadL(block.data(), 1, nBlock, pFile.get());
        take(std::string_view(block.data(), nRead));
    }
}

void readJsonRecords(const std::string& sPath, const std::function<void(std::string_view)>& take) {
    constexpr char cRecordSeparator = '\x1E';
    char cEnd = '\0'; // until the first byte tells
    std::string sRest;
    readBlocks(sPath, [&](std::string_view sBlock) {
        if (cEnd == '\0' && !sBlock.empty())
            cEnd = sBlock.front() == cRecordSeparator ? cRecordSeparator : '\n';
        for (std::size_t nEnd = 0; (nEnd = sBlock.find(cEnd)) != std::string_view::npos;) {
            sRest += sBlock.substr(0, nEnd);
            takeUnlessBlank(sRest, take);
            sRest.clear();
            sBlock.remove_prefix(nEnd + 1);
        }
        sRest += sBlock;
    });
    takeUnlessBlank(sRest, take);
}

} // namespace halvane::host::gdal
