#pragma once

// What a program written for one document needs to write it: a buffer of 1 MB and the texts of values.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace halvane::bench {

/// A file written through a buffer.
class Output {
public:
    explicit Output(const char* pPath)
        : lFile_(::open(pPath, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644)), aBytes_(nCapacity) {
        if (lFile_ < 0)
            throw std::runtime_error("The document cannot be written");
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output() { ::close(lFile_); }

    void put(std::string_view sText) {
        // No piece of these documents is as large as the buffer.
        if (sText.size() > nCapacity - nUsed_)
            flush();
        std::memcpy(aBytes_.data() + nUsed_, sText.data(), sText.size());
        nUsed_ += sText.size();
    }

    void flush() {
        for (std::size_t nDone = 0; nDone < nUsed_;) {
            const ssize_t nWritten = ::write(lFile_, aBytes_.data() + nDone, nUsed_ - nDone);
            if (nWritten < 0)
                throw std::runtime_error("The document cannot be written");
            nDone += static_cast<std::size_t>(nWritten);
        }
        nUsed_ = 0;
    }

    /// Room for a short text, which `commit` then adds.
    char* reserve(std::size_t nBytes) {
        if (nBytes > nCapacity - nUsed_)
            flush();
        return aBytes_.data() + nUsed_;
    }
    void commit(const char* pEnd) { nUsed_ = static_cast<std::size_t>(pEnd - aBytes_.data()); }

private:
    static constexpr std::size_t nCapacity = 1 << 20;

    int lFile_;
    std::vector<char> aBytes_;
    std::size_t nUsed_ = 0;
};

inline void putWhole(Output& out, std::int64_t nValue) {
    char* const pText = out.reserve(24);
    out.commit(std::to_chars(pText, pText + 24, nValue).ptr);
}

/// Cuts a number's decimals to `nKept`, rounding half up; it has more of them.
/// @returns the new end of the text.
inline char* cutDecimals(char* pText, char* pPoint, std::size_t nKept) {
    char* const pEnd = pPoint + 1 + nKept;
    if (*pEnd < '5')
        return pEnd;
    // The numbers that come here are below 0.1: a carry ends before the point.
    for (char* p = pEnd - 1; p > pText && p != pPoint; --p) {
        if (*p != '9') {
            ++*p;
            break;
        }
        *p = '0';
    }
    return pEnd;
}

/// A number rounded to 15 significant digits and then to 15 decimals, in fixed notation without padding
/// zeros. The shortest text that reads back as the number mostly has no more digits than that; then it is the
/// one.
inline void putReal(Output& out, double dValue) {
    constexpr std::size_t nMostBytes = 350;
    constexpr int lMostDigits = 15;
    char* const pText = out.reserve(nMostBytes);
    if (dValue == 0) {
        *pText = '0';
        out.commit(pText + 1);
        return;
    }
    char* pEnd = std::to_chars(pText, pText + nMostBytes, dValue, std::chars_format::fixed).ptr;
    // Sign, point and leading zeros are counted as digits here: a longer text is looked at again.
    if (pEnd - pText <= lMostDigits) {
        out.commit(pEnd);
        return;
    }
    const int lWholeDigits = static_cast<int>(std::floor(std::log10(std::fabs(dValue)))) + 1;
    const int lDecimals = lMostDigits - lWholeDigits;
    if (lDecimals > 0) {
        pEnd = std::to_chars(pText, pText + nMostBytes, dValue, std::chars_format::fixed, lDecimals).ptr;
        if (lDecimals > lMostDigits)
            pEnd = cutDecimals(pText, pEnd - lDecimals - 1, lMostDigits);
        while (pEnd[-1] == '0')
            --pEnd;
        if (pEnd[-1] == '.')
            --pEnd;
    }
    out.commit(pEnd);
}

/// "mm/dd/yyyy"
inline void putDate(Output& out, int lYear, int lMonth, int lDay) {
    char* p = out.reserve(10);
    const auto putDigits = [&p](int lValue, int lDivisor) {
        for (; lDivisor > 0; lDivisor /= 10)
            *p++ = static_cast<char>('0' + lValue / lDivisor % 10);
    };
    putDigits(lMonth, 10);
    *p++ = '/';
    putDigits(lDay, 10);
    *p++ = '/';
    putDigits(lYear, 1000);
    out.commit(p);
}

/// The bytes that cannot stand for themselves.
using SpecialBytes = std::array<bool, 256>;

constexpr SpecialBytes specialBytes(std::string_view sBytes) {
    SpecialBytes aSpecial{};
    for (const char c : sBytes)
        aSpecial[static_cast<unsigned char>(c)] = true;
    return aSpecial;
}

constexpr SpecialBytes specialInText = specialBytes("&<>\r");
constexpr SpecialBytes specialInAttribute = specialBytes("&<>\r\n\t\"");

inline std::string_view escapeOf(char c) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    default:
        return "&#13;";
    }
}

inline void putEscaped(Output& out, std::string_view sText, const SpecialBytes& aSpecial) {
    std::size_t nRun = 0;
    for (std::size_t n = 0; n < sText.size(); ++n) {
        if (!aSpecial[static_cast<unsigned char>(sText[n])])
            continue;
        out.put(sText.substr(nRun, n - nRun));
        out.put(escapeOf(sText[n]));
        nRun = n + 1;
    }
    out.put(sText.substr(nRun));
}

/// The content of an element.
inline void putText(Output& out, std::string_view sText) {
    putEscaped(out, sText, specialInText);
}

/// A value between double quotes.
inline void putAttribute(Output& out, std::string_view sText) {
    putEscaped(out, sText, specialInAttribute);
}

} // namespace halvane::bench
