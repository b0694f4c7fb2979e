#include "base/Failure.h"

#include <new>

namespace halvane {

namespace {

const char* descriptionOf(FailureNumber number) noexcept {
    switch (number) {
    case FailureNumber::InvalidProcedureCall:
        return "Invalid procedure call or argument";
    case FailureNumber::Overflow:
        return "Overflow";
    case FailureNumber::OutOfMemory:
        return "Out of memory";
    case FailureNumber::SubscriptOutOfRange:
        return "Subscript out of range";
    case FailureNumber::TypeMismatch:
        return "Type mismatch";
    case FailureNumber::InternalError:
        return "Internal error";
    case FailureNumber::FileNotFound:
        return "File not found";
    case FailureNumber::DeviceIo:
        return "Device I/O error";
    case FailureNumber::PathFileAccess:
        return "Path/File access error";
    case FailureNumber::ObjectVariableNotSet:
        return "Object variable not set";
    case FailureNumber::ObjectRequired:
        return "Object required";
    case FailureNumber::CannotCreateComponent:
        return "Component can't create object";
    case FailureNumber::PropertyOrMethodNotSupported:
        return "Object doesn't support this property or method";
    case FailureNumber::ActionNotSupported:
        return "Object doesn't support this action";
    case FailureNumber::DuplicateKey:
        return "This key is already associated with an element of this collection";
    case FailureNumber::HostFailure:
        return "Application-defined or object-defined error";
    case FailureNumber::DocumentFailure:
        return "Document object model error";
    }
    return "Application-defined or object-defined error";
}

} // namespace

Failure Failure::of(FailureNumber number) {
    return {number, descriptionOf(number)};
}

Failure Failure::about(std::string context) const {
    Failure failure = *this;
    if (failure.context_.empty())
        failure.context_ = std::move(context);
    return failure;
}

Failure currentFailure() {
    try {
        throw;
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::bad_alloc&) {
        return Failure::of(FailureNumber::OutOfMemory);
    } catch (const std::exception& exception) {
        return {FailureNumber::InternalError, exception.what()};
    } catch (...) {
        return Failure::of(FailureNumber::InternalError);
    }
}

} // namespace halvane
