#pragma once

#include "io/Durability.h"
#include "io/OutputBuffer.h"
#include "io/TemporaryFile.h"

#include <memory>
#include <string>
#include <string_view>

namespace halvane::io {

/// Writes a file beside its target and puts it in the target's place once it is whole. Until then, and when
/// anything fails, the target stays as it was. A target that is a symbolic link stays one: the file that it
/// leads to is replaced. What an ended process left unfinished beside the target is removed.
class ReplacingFile : public ByteSink {
public:
    /// Renames what was written over the target. Call once.
    /// @returns why a loss of power may undo the renaming although the name was to be on the disk: the
    /// platform's text; "" where all went well. The target has been replaced in either case.
    /// @throws Failure with the path and the platform's text; the target is then as it was.
    [[nodiscard]] virtual std::string commit(Durability durability) = 0;

    /// @throws Failure with the path and the platform's text when no file can be written there.
    [[nodiscard]] static std::unique_ptr<ReplacingFile> create(std::string_view sTarget);
    /// The same with a temporary file as the file beside the target: what is written goes behind what it
    /// holds.
    /// @returns nothing, with nothing changed, where the temporary file cannot get a name there.
    [[nodiscard]] static std::unique_ptr<ReplacingFile> adopt(TemporaryFile& file, std::string_view sTarget);
};

} // namespace halvane::io
