#pragma once

#include "base/com/Variant.h"
#include "component/com/Invocation.h"
#include "component/com/ParameterType.h"

#include <vector>

namespace halvane::server {

/// The arguments of a late-bound call in the types that the member takes. What the member passes back goes to
/// the caller's variables when it is asked for; a variable that the member left alone keeps what it holds. A
/// member that tells an empty text says so by a new text.
class TypedArguments {
public:
    /// @param given lent for the life of this.
    TypedArguments(ITypeInfo& info, const FUNCDESC& function, const DISPPARAMS& given,
                   const MemberCall& call);
    TypedArguments(const TypedArguments&) = delete;
    TypedArguments& operator=(const TypedArguments&) = delete;

    /// Converts the arguments. @returns the code of the first that cannot be converted.
    [[nodiscard]] HRESULT convert(UINT* pnWrongArgument);
    /// Valid after convert().
    [[nodiscard]] DISPPARAMS* parameters() noexcept { return &parameters_; }
    /// Gives the caller's variables what the member passed back. @throws Failure.
    void passBack();

private:
    struct Argument {
        ParameterType type;
        com::Variant vOwn;      ///< what the member receives
        bool bPassBack = false; ///< `vOwn` stands for a variable of the caller
        LONGLONG nBefore = 0;   ///< the bits of `vOwn` before the call
    };

    void convertOne(UINT nArgument);
    [[nodiscard]] com::Variant ownOf(const VARIANT& variable, const Argument& argument, UINT nPlace) const;

    ITypeInfo& info_;
    const FUNCDESC& function_;
    const DISPPARAMS& given_;
    const MemberCall& call_;
    std::vector<Argument> aArguments_;
    std::vector<VARIANT> aPassed_; ///< owns nothing
    DISPPARAMS parameters_{};
};

} // namespace halvane::server
