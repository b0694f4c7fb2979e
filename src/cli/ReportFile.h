#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace halvane::cli {

/// The file of --report: old or new, never half. It is opened before an export, so that a place that cannot
/// be written is known in time, and written after it.
class ReportFile {
public:
    /// @param sPath absolute. @throws Failure PathFileAccess when nothing can be written there.
    explicit ReportFile(std::string sPath);
    ReportFile(const ReportFile&) = delete;
    ReportFile& operator=(const ReportFile&) = delete;
    /// Without a commit() nothing is left behind.
    ~ReportFile();

    /// @throws Failure DeviceIo when it cannot be written; the file is then as it was before.
    void commit(std::string_view sContent);

private:
    void close() noexcept;

    std::string sPath_;
    std::string sTemporary_; ///< "" when the file is written in place
    int lDescriptor_ = -1;
};

} // namespace halvane::cli
