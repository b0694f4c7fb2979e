#pragma once

#include "base/com/Windows.h"

#include <optional>

namespace halvane::server {

/// What a member does with what it is passed by reference, beyond what its description tells.
struct MemberTraits {
    /// The place of a text that it reads before it passes one back; the other results are not read.
    std::optional<UINT> readText;
    /// An array that it passes back is a new one: what the caller's holds is not read. The member returns how
    /// many elements it has, a whole number of 32 bits; -1 where the caller's array cannot take them.
    bool bMakesArray = false;
};

struct MemberCall {
    DISPID lMember;
    LCID lcid;
    WORD wFlags;
    MemberTraits traits;
};

/// Calls a member of a dual interface for a late-bound caller. Beyond what the system's own invocation
/// accepts: a script's variable (a VARIANT by reference) stands for a parameter of any type that is passed by
/// reference, and receives the result; a plain value does too, and what is passed back is lost; "no object"
/// may be written as an empty value or as null; an empty text as null.
/// @param pInstance the dual interface that `info` describes.
/// @returns as IDispatch::Invoke; DISP_E_BADPARAMCOUNT and DISP_E_PARAMNOTFOUND for arguments that are not
///          those of the member, whatever the system would make of them.
[[nodiscard]] HRESULT invokeMember(ITypeInfo& info, void* pInstance, const MemberCall& call,
                                   const DISPPARAMS& arguments, VARIANT* pResult, EXCEPINFO* pException,
                                   UINT* pnWrongArgument);

} // namespace halvane::server
