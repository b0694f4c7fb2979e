#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace halvane::io {

/// A file without a name: it is gone when its owner is, however the process ends. The platform's part is in
/// one source file.
class TemporaryFile {
public:
    TemporaryFile() = default;
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    virtual ~TemporaryFile() = default;

    /// @throws Failure DeviceIo, also when only a part could be written.
    virtual void append(std::string_view sBytes) = 0;
    /// Fills the whole span from an offset. @throws Failure DeviceIo when that cannot be done.
    virtual void read(std::uint64_t nOffset, std::span<char> aBytes) = 0;

    /// Gives the file a name of its own, which is not in use yet; from that moment on it has the permissions
    /// `nMode` of the platform. @returns a descriptor of the platform that
    /// appends to it, owned by the caller, or nothing, with nothing changed, where the platform or the place
    /// cannot do that.
    [[nodiscard]] virtual std::optional<int> linkAs(const std::string& sPath, unsigned nMode) = 0;

    /// A new file in a folder; "" stands for the system's folder for temporary files.
    /// @throws Failure DeviceIo when it cannot be made.
    [[nodiscard]] static std::unique_ptr<TemporaryFile> create(std::string_view sFolder);
};

} // namespace halvane::io
