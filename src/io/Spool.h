#pragma once

#include "base/Failure.h"
#include "io/OutputBuffer.h"
#include "io/ReplacingFile.h"
#include "io/TemporaryFile.h"
#include "io/WriteBehind.h"

#include <cstddef>
#include <cstdint>
#include <functional>
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

    /// What is to stand in the temporary file in front of the spool's bytes: asked for once, when the file is
    /// made.
    using Head = std::function<std::string()>;

    /// The temporary file is made in that folder when it is needed; "": the system's.
    explicit Spool(std::string sFolder, Head fnHead = {});

    /// Where to append; putting throws Failure DeviceIo when the file cannot be written, at once or up to two
    /// buffers of 256 KB later.
    [[nodiscard]] OutputBuffer& out() noexcept { return out_; }
    [[nodiscard]] std::uint64_t size() const noexcept { return out_.position(); }
    /// Puts the bytes of a range into another buffer. @throws Failure DeviceIo.
    void copy(const Range& range, OutputBuffer& target);
    /// @throws Failure DeviceIo, the one that broke the spool.
    void requireWhole() const;
    /// Turns the temporary file, with `sHead` and all bytes in it, into a file that replaces a target once
    /// its tail is written and committed. The spool cannot be used any more then.
    /// @returns nothing, with nothing changed, when there is no such file, its head is another, or it cannot
    /// be.
    [[nodiscard]] std::unique_ptr<ReplacingFile> turnInto(std::string_view sTarget, std::string_view sHead);

private:
    class Storage : public ByteSink {
    public:
        Storage(std::string sFolder, Head fnHead)
            : sFolder_(std::move(sFolder)), fnHead_(std::move(fnHead)) {}
        void write(std::string_view sBytes) override;
        void writeBuffer(BufferBytes& aBytes, std::size_t nBytes, std::size_t nCapacity) override;
        void copy(const Range& range, OutputBuffer& target);
        void requireWhole() const;
        [[nodiscard]] std::unique_ptr<ReplacingFile> turnInto(std::string_view sTarget,
                                                              std::string_view sHead);

    private:
        void writeToMemory(std::string_view sBytes);
        void writeToFile(std::string_view sBytes);
        [[nodiscard]] bool writesBehind();
        void finishWriting();
        template<class Write>
        void orBreak(const Write& write);

        std::string sFolder_;
        Head fnHead_;
        std::string sHead_;   ///< what the file begins with
        std::string sMemory_; ///< everything, as long as there is no file
        std::unique_ptr<TemporaryFile> pFile_;
        std::unique_ptr<WriteBehind> pWriter_; ///< to the file, from its second buffer on; goes before it
        std::vector<char> aReadBuffer_;
        std::optional<Failure> broken_;
    };

    Storage storage_;
    OutputBuffer out_;
};

} // namespace halvane::io
