#pragma once

#include "collection/Failure.h"
#include "xml/io/OutputBuffer.h"
#include "xml/io/TemporaryFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::io {

/// Bytes that are only ever appended: in memory at first, in an unnamed temporary file once there are many.
/// Once the file fails the spool stays broken.
class Spool {
public:
    struct Range {
        std::uint64_t nOffset = 0;
        std::uint64_t nBytes = 0;
    };

    /// So many bytes are kept in memory.
    static constexpr std::size_t memoryLimit = 8U << 20U;

    /// The temporary file is made in that folder when it is needed; "": the system's.
    explicit Spool(std::string sFolder);

    /// Where to append; putting throws Failure DeviceIo when the file cannot be written.
    [[nodiscard]] OutputBuffer& out() noexcept { return out_; }
    [[nodiscard]] std::uint64_t size() const noexcept { return out_.position(); }
    /// Puts the bytes of a range into another buffer. @throws Failure DeviceIo.
    void copy(const Range& range, OutputBuffer& target);
    /// @throws Failure DeviceIo, the one that broke the spool.
    void requireWhole() const;

private:
    class Storage : public ByteSink {
    public:
        explicit Storage(std::string sFolder) : sFolder_(std::move(sFolder)) {}
        void write(std::string_view sBytes) override;
        void copy(const Range& range, OutputBuffer& target);
        void requireWhole() const;

    private:
        void writeToFile(std::string_view sBytes);

        std::string sFolder_;
        std::string sMemory_; ///< everything, as long as there is no file
        std::unique_ptr<TemporaryFile> pFile_;
        std::vector<char> aReadBuffer_;
        std::optional<Failure> broken_;
    };

    Storage storage_;
    OutputBuffer out_;
};

} // namespace halvane::io
