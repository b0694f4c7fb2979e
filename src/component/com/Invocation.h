#pragma once

#include "base/com/Windows.h"

#include <optional>

namespace halvane::server {

struct MemberCall {
    DISPID lMember;
    LCID lcid;
    WORD wFlags;
    /// The place of a text that the member reads before it passes one back; the other results are not read.
    std::optional<UINT> readText;
};

/// Calls a member of a dual interface for a late-bound caller. Beyond what the system's own invocation
/// accepts: a script's variable (a VARIANT by reference) stands for a parameter of any type that is passed by
/// reference, and receives the result; a plain value does too, and what is passed back is lost; "no object"
/// may be written as an empty value or as null; an empty text as null.
/// @param pInstance the dual interface that `info` describes.
/// @returns as IDispatch::Invoke.
[[nodiscard]] HRESULT invokeMember(ITypeInfo& info, void* pInstance, const MemberCall& call,
                                   const DISPPARAMS& arguments, VARIANT* pResult, EXCEPINFO* pException,
                                   UINT* pnWrongArgument);

} // namespace halvane::server
