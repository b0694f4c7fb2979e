#pragma once

#include "base/com/ComPtr.h"

namespace halvane::test {

/// Makes an object the running application "Halvane.HostApplication", for as long as it lives.
class RegisteredApplication {
public:
    explicit RegisteredApplication(const com::ComPtr<IDispatch>& pApplication);
    RegisteredApplication(const RegisteredApplication&) = delete;
    RegisteredApplication& operator=(const RegisteredApplication&) = delete;
    ~RegisteredApplication();

private:
    DWORD nRegistration_ = 0;
};

} // namespace halvane::test
