#include "cli/jobs/Csv.h"

namespace halvane::cli {

CsvReader::CsvReader(std::string_view sText) : sText_(sText), cSeparator_(',') {
    const std::string_view sFirst = sText.substr(0, sText.find('\n'));
    if (const auto nFound = sFirst.find_first_of(",;\t"); nFound != std::string_view::npos)
        cSeparator_ = sFirst[nFound];
}

bool CsvReader::next(std::vector<std::string>& values) {
    do {
        if (nAt_ >= sText_.size())
            return false;
        values.clear();
        readRecord(values);
    } while (values.size() == 1 && values.front().empty());
    return true;
}

void CsvReader::readRecord(std::vector<std::string>& values) {
    nBegan_ = nLine_;
    std::string sValue;
    while (nAt_ < sText_.size()) {
        const char c = sText_[nAt_++];
        if (c == '"' && sValue.empty()) {
            readQuoted(sValue);
        } else if (c == cSeparator_) {
            values.push_back(std::move(sValue));
            sValue.clear();
        } else if (c == '\n') {
            ++nLine_;
            break;
        } else if (c != '\r' || (nAt_ < sText_.size() && sText_[nAt_] != '\n')) {
            sValue += c;
        }
    }
    values.push_back(std::move(sValue));
}

void CsvReader::readQuoted(std::string& sValue) {
    while (nAt_ < sText_.size()) {
        const char c = sText_[nAt_++];
        if (c == '"' && (nAt_ >= sText_.size() || sText_[nAt_] != '"'))
            return;
        if (c == '"')
            ++nAt_;
        if (c == '\n')
            ++nLine_;
        sValue += c;
    }
    bLeftOpen_ = true;
}

} // namespace halvane::cli
