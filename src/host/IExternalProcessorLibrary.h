#pragma once

// How a shared library offers external processors to the program that loads it.
//
//     class RoadReport : public halvane::IExternalProcessor {
//         std::string Process(halvane::dCollection& dColSpatialVariables) override { ... }
//     };
//
//     HALVANE_PROCESSOR_LIBRARY(registrar) {
//         registrar.registerProcessor("City.RoadReport", [] { return std::make_shared<RoadReport>(); });
//     }
//
// The library is compiled with the headers and the compiler of the program that loads it, and links
// halvane_host. It is loaded only when the person who starts the program names it; it stays loaded until the
// process ends.

#include "host/IExternalProcessor.h"

#include <functional>
#include <memory>
#include <string_view>

namespace halvane {

/// Makes a component; what it makes implements IExternalProcessor to be of use. Called for every use of the
/// ProgID, on the exporting thread; it may throw.
using ProcessorFactory = std::function<std::shared_ptr<Object>()>;

/// Takes a library's components while it is being loaded.
class HalvaneRegistrar {
public:
    HalvaneRegistrar() = default;
    HalvaneRegistrar(const HalvaneRegistrar&) = delete;
    HalvaneRegistrar& operator=(const HalvaneRegistrar&) = delete;
    virtual ~HalvaneRegistrar() = default;

    /// @param sProgId what a control file calls the component; compared ignoring case. A later registration
    ///        of the same identifier replaces an earlier one.
    virtual void registerProcessor(std::string_view sProgId, ProcessorFactory factory) = 0;
};

/// Grows with every change of these headers that a compiled library would not survive.
inline constexpr int lProcessorLibraryVersion = 1;

} // namespace halvane

#define HALVANE_EXPORTED __attribute__((visibility("default")))

extern "C" {
/// The version of the headers that the library was compiled with. Optional; a library that has it is refused
/// when the versions differ.
HALVANE_EXPORTED int halvane_processor_library_version();
/// Registers the library's components. Called once.
HALVANE_EXPORTED void halvane_register_processors(halvane::HalvaneRegistrar* pRegistrar);
}

/// Defines both functions; the block that follows is the registration.
// Only a macro can define functions, and its argument is the name of a parameter.
// NOLINTBEGIN(cppcoreguidelines-macro-usage,bugprone-macro-parentheses)
#define HALVANE_PROCESSOR_LIBRARY(registrar)                                                                 \
    static void halvaneRegisterProcessors(halvane::HalvaneRegistrar& registrar);                             \
    extern "C" int halvane_processor_library_version() {                                                     \
        return halvane::lProcessorLibraryVersion;                                                            \
    }                                                                                                        \
    extern "C" void halvane_register_processors(halvane::HalvaneRegistrar* pRegistrar) {                     \
        halvaneRegisterProcessors(*pRegistrar);                                                              \
    }                                                                                                        \
    static void halvaneRegisterProcessors(halvane::HalvaneRegistrar& registrar)
// NOLINTEND(cppcoreguidelines-macro-usage,bugprone-macro-parentheses)
