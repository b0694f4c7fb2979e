#pragma once

#include "base/com/ComPtr.h"

#include <memory>
#include <string_view>

namespace halvane::test {

/// A script engine in the process, with one script's names.
class ScriptEngine {
public:
    /// @param sLanguage "JScript" or "VBScript".
    /// @throws Failure when the engine is not there or the script does not run.
    ScriptEngine(std::string_view sLanguage, std::string_view sScript);
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;
    ~ScriptEngine();

    /// The value of an expression, as an object. @throws Failure when it is none.
    [[nodiscard]] com::ComPtr<IDispatch> evaluate(std::string_view sExpression);
    /// Runs statements.
    void run(std::string_view sStatements);

private:
    struct Engine;
    std::unique_ptr<Engine> pEngine_;
};

/// The component technology, for as long as the scope lives.
class Apartment {
public:
    Apartment();
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment();
};

} // namespace halvane::test
