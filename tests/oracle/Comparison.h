#pragma once

#include "oracle/ControlTree.h"
#include "oracle/Interpreter.h"
#include "oracle/RandomWorld.h"
#include "support/TemporaryFolder.h"

#include <cstdint>
#include <string>

namespace halvane::oracle {

/// A random world and a random control file over it; the same for the same seed.
struct Case {
    std::uint64_t nSeed = 0;
    World world;
    ControlNode root;
};
[[nodiscard]] Case makeCase(std::uint64_t nSeed, Texts texts = Texts::AnyBytes);
/// The same with texts so long that the document of some outgrows what is kept of it in memory.
[[nodiscard]] Case makeLargeCase(std::uint64_t nSeed);
/// The same with lines and areas of thousands of vertices, in few parts or in thousands.
[[nodiscard]] Case makeCaseOfLargeShapes(std::uint64_t nSeed);

/// The same of the second edition, in a world where shapes alone fail, and counts.
[[nodiscard]] Case makeSecondCase(std::uint64_t nSeed, const SecondEdition& edition);

/// The export itself, run over the case's control file.
[[nodiscard]] Outcome exported(Case& testCase, const test::TemporaryFolder& folder);
/// The interpreter's outcome. @param pReach filled when given.
[[nodiscard]] Outcome interpreted(Case& testCase, Reach* pReach = nullptr);

/// The case with as little in its control file as still makes the two differ.
void shrink(Case& testCase, const test::TemporaryFolder& folder);

/// What differs, for a person to read.
[[nodiscard]] std::string describeDifference(Case& testCase, const Outcome& actual, const Outcome& expected);

} // namespace halvane::oracle
