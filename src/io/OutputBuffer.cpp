#include "io/OutputBuffer.h"

namespace halvane::io {

void OutputBuffer::flush() {
    const auto nBytes = static_cast<std::size_t>(pCursor_ - aBytes_.get());
    if (nBytes == 0)
        return;
    const auto nCapacity = static_cast<std::size_t>(pEnd_ - aBytes_.get());
    pCursor_ = aBytes_.get();
    nFlushed_ += nBytes;
    sink_.writeBuffer(aBytes_, nBytes, nCapacity);
    pCursor_ = aBytes_.get();
    pEnd_ = pCursor_ + nCapacity;
}

void OutputBuffer::putLarge(std::string_view sBytes) {
    flush();
    if (sBytes.size() < static_cast<std::size_t>(pEnd_ - pCursor_)) {
        put(sBytes);
        return;
    }
    nFlushed_ += sBytes.size();
    sink_.write(sBytes);
}

} // namespace halvane::io
