#include "base/CommaLocale.h"

#include <array>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string_view>

namespace halvane::test {

namespace {

constexpr const char* sLocale = "de_DE.UTF-8";

bool activate() {
    return std::setlocale(LC_NUMERIC, sLocale) != nullptr &&
           std::string_view(std::localeconv()->decimal_point) == ",";
}

/// A folder with the compiled locale, removed at the end of the process.
class CompiledLocale {
public:
    CompiledLocale() {
        std::string sTemplate = (std::filesystem::temp_directory_path() / "locales-XXXXXX").string();
        if (mkdtemp(sTemplate.data()) == nullptr)
            return;
        folder_ = sTemplate;
        const std::string sCommand =
            "localedef -i de_DE -f UTF-8 '" + (folder_ / sLocale).string() + "' >/dev/null 2>&1";
        bMade_ = std::system(sCommand.c_str()) == 0;
    }
    CompiledLocale(const CompiledLocale&) = delete;
    CompiledLocale& operator=(const CompiledLocale&) = delete;
    ~CompiledLocale() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    void offer() const {
        if (bMade_)
            setenv("LOCPATH", folder_.c_str(), 1);
    }

private:
    std::filesystem::path folder_;
    bool bMade_ = false;
};

} // namespace

CommaLocale::CommaLocale() : sEarlier_(std::setlocale(LC_NUMERIC, nullptr)), bActive_(activate()) {
    if (bActive_)
        return;
    static const CompiledLocale compiled;
    compiled.offer();
    bActive_ = activate();
}

CommaLocale::~CommaLocale() {
    std::setlocale(LC_NUMERIC, sEarlier_.c_str());
}

} // namespace halvane::test
