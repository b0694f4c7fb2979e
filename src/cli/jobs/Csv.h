#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::cli {

/// Reads records of a text with separated values: quotes around a value let it hold separators, line ends and
/// doubled quotes.
class CsvReader {
public:
    /// @param sText stays. The separator is the first of "," ";" and tab on its first line.
    explicit CsvReader(std::string_view sText);

    /// Reads the next record that is not blank. @returns false at the end.
    [[nodiscard]] bool next(std::vector<std::string>& values);
    /// Where the last record began, from 1.
    [[nodiscard]] std::size_t line() const noexcept { return nBegan_; }
    /// Whether the text ended inside quotes.
    [[nodiscard]] bool leftOpen() const noexcept { return bLeftOpen_; }

private:
    void readRecord(std::vector<std::string>& values);
    void readQuoted(std::string& sValue);

    std::string_view sText_;
    char cSeparator_;
    std::size_t nAt_ = 0;
    std::size_t nLine_ = 1;
    std::size_t nBegan_ = 0;
    bool bLeftOpen_ = false;
};

} // namespace halvane::cli
