#include "cli/ReportFile.h"

#include "io/PosixFile.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <utility>

namespace halvane::cli {

namespace fs = std::filesystem;

namespace {

class Device : public io::ByteSink {
public:
    explicit Device(std::string sPath)
        : sPath_(std::move(sPath)),
          // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
          device_(::open(sPath_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY)) {
        if (!device_.isOpen())
            throw io::fileFailure(errno, sPath_);
    }

    void write(std::string_view sBytes) override {
        if (const int nError = io::writeAll(device_, sBytes); nError != 0)
            throw io::fileFailure(nError, sPath_);
    }

private:
    std::string sPath_;
    io::FileDescriptor device_;
};

} // namespace

ReportFile::ReportFile(const std::string& sPath) {
    std::error_code error;
    const auto status = fs::status(sPath, error);
    if (fs::exists(status) && !fs::is_regular_file(status))
        pDevice_ = std::make_unique<Device>(sPath);
    else
        pFile_ = io::ReplacingFile::create(sPath);
}

std::string ReportFile::commit(std::string_view sContent, io::Durability durability) {
    if (pDevice_ != nullptr) {
        pDevice_->write(sContent);
        return {};
    }
    pFile_->write(sContent);
    return pFile_->commit(durability);
}

} // namespace halvane::cli
