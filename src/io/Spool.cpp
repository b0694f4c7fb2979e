#include "io/Spool.h"

#include <algorithm>
#include <system_error>

namespace halvane::io {

namespace {
constexpr std::size_t writeBufferSize = 256U << 10U;
constexpr std::size_t readBufferSize = 1U << 20U;
} // namespace

Spool::Spool(std::string sFolder, Head fnHead)
    : storage_(std::move(sFolder), std::move(fnHead)), out_(storage_, writeBufferSize) {}

std::unique_ptr<ReplacingFile> Spool::turnInto(std::string_view sTarget, std::string_view sHead) {
    out_.flush();
    return storage_.turnInto(sTarget, sHead);
}

std::unique_ptr<ReplacingFile> Spool::Storage::turnInto(std::string_view sTarget, std::string_view sHead) {
    finishWriting();
    if (pFile_ == nullptr || sHead != sHead_)
        return nullptr;
    auto pFile = ReplacingFile::adopt(*pFile_, sTarget);
    if (pFile != nullptr)
        broken_ = Failure(FailureNumber::DeviceIo,
                          "the sealed parts of the document went into the file that it was "
                          "saved to");
    return pFile;
}

void Spool::copy(const Range& range, OutputBuffer& target) {
    out_.flush();
    storage_.copy(range, target);
}

void Spool::requireWhole() const {
    storage_.requireWhole();
}

void Spool::Storage::requireWhole() const {
    if (broken_)
        throw Failure(*broken_);
    if (pWriter_ != nullptr)
        pWriter_->requireWhole();
}

template<class Write>
void Spool::Storage::orBreak(const Write& write) {
    requireWhole();
    try {
        write();
    } catch (...) {
        broken_ = currentFailure();
        throw;
    }
}

void Spool::Storage::finishWriting() {
    requireWhole();
    if (pWriter_ != nullptr)
        orBreak([this] { pWriter_->finish(); });
}

void Spool::Storage::write(std::string_view sBytes) {
    finishWriting();
    orBreak([&] {
        if (pFile_ == nullptr && sMemory_.size() + sBytes.size() <= memoryLimit)
            writeToMemory(sBytes);
        else
            writeToFile(sBytes);
    });
}

bool Spool::Storage::writesBehind() {
    if (pWriter_ == nullptr && pFile_ != nullptr) {
        try {
            pWriter_ = std::make_unique<WriteBehind>(*pFile_);
        } catch (const std::system_error&) {
            return false; // no thread can be had
        }
    }
    return pWriter_ != nullptr;
}

void Spool::Storage::writeBuffer(BufferBytes& aBytes, std::size_t nBytes, std::size_t nCapacity) {
    requireWhole();
    if (writesBehind())
        orBreak([&] { pWriter_->append(aBytes, nBytes, nCapacity); });
    else
        write({aBytes.get(), nBytes});
}

void Spool::Storage::writeToMemory(std::string_view sBytes) {
    // Left to itself the text can grow to twice the limit with its last bytes.
    if (sMemory_.size() + sBytes.size() > std::max(sMemory_.capacity(), memoryLimit / 4))
        sMemory_.reserve(memoryLimit);
    sMemory_.append(sBytes);
}

void Spool::Storage::writeToFile(std::string_view sBytes) {
    if (pFile_ == nullptr) {
        auto pFile = TemporaryFile::create(sFolder_);
        if (fnHead_)
            sHead_ = fnHead_();
        pFile->append(sHead_);
        pFile->append(sMemory_);
        pFile_ = std::move(pFile);
        sMemory_ = std::string();
    }
    pFile_->append(sBytes);
}

void Spool::Storage::copy(const Range& range, OutputBuffer& target) {
    finishWriting();
    if (pFile_ == nullptr) {
        target.put(std::string_view(sMemory_).substr(static_cast<std::size_t>(range.nOffset),
                                                     static_cast<std::size_t>(range.nBytes)));
        return;
    }
    aReadBuffer_.resize(readBufferSize);
    for (std::uint64_t nDone = 0; nDone < range.nBytes;) {
        const auto nPart =
            static_cast<std::size_t>(std::min<std::uint64_t>(readBufferSize, range.nBytes - nDone));
        pFile_->read(sHead_.size() + range.nOffset + nDone, {aReadBuffer_.data(), nPart});
        target.put(std::string_view(aReadBuffer_.data(), nPart));
        nDone += nPart;
    }
}

} // namespace halvane::io
