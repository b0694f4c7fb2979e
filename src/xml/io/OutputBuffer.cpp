#include "xml/io/OutputBuffer.h"

namespace halvane::io {

void OutputBuffer::flush() {
    const std::string_view sBytes(aBytes_.get(), static_cast<std::size_t>(pCursor_ - aBytes_.get()));
    pCursor_ = aBytes_.get();
    nFlushed_ += sBytes.size();
    if (!sBytes.empty())
        sink_.write(sBytes);
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
