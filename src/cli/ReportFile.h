#pragma once

#include "io/OutputBuffer.h"
#include "io/ReplacingFile.h"

#include <memory>
#include <string>
#include <string_view>

namespace halvane::cli {

/// The file of --report: old or new, never half. It is opened before an export, so that a place that cannot
/// be written is known in time, and written after it. A device or a pipe is written, not replaced.
class ReportFile {
public:
    /// @param sPath absolute. @throws Failure with the path and the reason when nothing can be written there.
    explicit ReportFile(const std::string& sPath);

    /// @returns why a loss of power may take it although it was to be on the disk; "" where it cannot.
    /// @throws Failure with the path and the reason when it cannot be written; the file is then as it was
    ///         before.
    [[nodiscard]] std::string commit(std::string_view sContent, io::Durability durability);

private:
    std::unique_ptr<io::ReplacingFile> pFile_;
    std::unique_ptr<io::ByteSink> pDevice_; ///< instead of the file
};

} // namespace halvane::cli
