#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

namespace halvane {

/// Numbers of failures, those of the classic Windows automation runtime.
enum class FailureNumber : std::int32_t {
    InvalidProcedureCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    TypeMismatch = 13,
    InternalError = 51,
    FileNotFound = 53,
    DeviceIo = 57,
    PathFileAccess = 75,
    ObjectVariableNotSet = 91,
    ObjectRequired = 424,
    CannotCreateComponent = 429,
    PropertyOrMethodNotSupported = 438,
    ActionNotSupported = 445,
    DuplicateKey = 457,
    /// A failure that the host application reports: the description is the host's own text.
    HostFailure = 1004,
    /// A failure of the document object model: a bad name, an expression that cannot be parsed, a refused
    /// child.
    DocumentFailure = 1005,
};

/// The one exception type: a number and a description, caught at the boundaries of the engine's procedures.
class Failure : public std::exception {
public:
    Failure(FailureNumber number, std::string description)
        : number_(static_cast<std::int32_t>(number)), description_(std::move(description)) {}
    Failure(std::int32_t number, std::string description)
        : number_(number), description_(std::move(description)) {}

    /// Never 0.
    [[nodiscard]] std::int32_t number() const noexcept { return number_; }
    [[nodiscard]] const std::string& description() const noexcept { return description_; }
    [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

    /// A failure with the runtime's own text for its number ("Type mismatch").
    [[nodiscard]] static Failure of(FailureNumber number);

    /// Which value of what failed, or what it comes from, for a message to a person; "" where nobody knew.
    [[nodiscard]] const std::string& context() const noexcept { return context_; }
    /// The same failure with that context, or with the one that it has: nearer to the cause more was known.
    [[nodiscard]] Failure about(std::string context) const;

private:
    std::int32_t number_;
    std::string description_;
    std::string context_;
};

/// The failure that is being handled, whatever its C++ type: call it only inside a catch block.
/// std::bad_alloc becomes OutOfMemory, any other exception InternalError with its text.
[[nodiscard]] Failure currentFailure();

} // namespace halvane
