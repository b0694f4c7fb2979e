#pragma once

#include "io/ReplacingFile.h"
#include "support/FailureNumbers.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <string_view>

namespace halvane::test {

inline std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

/// Puts a file with that text in the place of the target.
inline void replace(std::string_view sTarget, std::string_view sText,
                    io::Durability durability = io::Durability::LeftToSystem) {
    const auto pFile = io::ReplacingFile::create(sTarget);
    pFile->write(sText);
    EXPECT_EQ(pFile->commit(durability), "");
}

/// The same with a temporary file that held the text before.
inline void replaceByTemporaryFile(const std::string& sTarget, std::string_view sText,
                                   io::Durability durability = io::Durability::LeftToSystem) {
    const auto pTemporary = io::TemporaryFile::create(std::filesystem::path(sTarget).parent_path().string());
    pTemporary->append(sText);
    const auto pFile = io::ReplacingFile::adopt(*pTemporary, sTarget);
    ASSERT_NE(pFile, nullptr);
    EXPECT_EQ(pFile->commit(durability), "");
}

inline Failure failureOfReplacing(std::string_view sTarget, std::string_view sText = "new") {
    try {
        replace(sTarget, sText);
    } catch (const Failure& failure) {
        return failure;
    }
    ADD_FAILURE() << "replaced";
    return Failure::of(FailureNumber::InternalError);
}

} // namespace halvane::test
