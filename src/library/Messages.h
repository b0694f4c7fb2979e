#pragma once

#include "halvane.h"
#include "telling/Console.h"

namespace halvane::library {

/// Passes the lines of the command line on to who asked for them.
class Messages final : public Console {
public:
    void tell(halvane_message pCallback, void* pUser) noexcept {
        pCallback_ = pCallback;
        pUser_ = pUser;
    }

    void result(std::string_view sLine) const override { pass(HALVANE_RESULT, sLine); }
    void note(std::string_view sLine) const override { pass(HALVANE_NOTE, sLine); }
    void failure(std::string_view sLine) const override { pass(HALVANE_FAILURE, sLine); }

private:
    void pass(int nLevel, std::string_view sLine) const;

    halvane_message pCallback_ = nullptr;
    void* pUser_ = nullptr; ///< the caller's
};

} // namespace halvane::library
