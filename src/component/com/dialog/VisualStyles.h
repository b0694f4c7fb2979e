#pragma once

#include "base/com/Windows.h"

namespace halvane::server {

/// Windows that this thread makes have the controls that a library's manifest names, whatever its program
/// asks for, as long as this lives. Where that cannot be had they look old.
class VisualStyles {
public:
    /// @param hLibrary has the manifest for isolated libraries.
    explicit VisualStyles(HMODULE hLibrary) noexcept;
    VisualStyles(const VisualStyles&) = delete;
    VisualStyles& operator=(const VisualStyles&) = delete;
    ~VisualStyles();

private:
    HANDLE hContext_;
    ULONG_PTR nActivation_ = 0;
};

} // namespace halvane::server
