#include "host/gdal/GdalHost.h"
#include "library/Handle.h"
#include "run/DescribeRun.h"
#include "run/describe/DescriptionJson.h"
#include "telling/Version.h"

#include <memory>

using namespace halvane;
using library::Handle;

/// The description of the public header.
struct halvane_description final : Handle {
    std::string sMap;
    std::string sJson;
    bool bAllowConnections = false;

protected:
    void reset() override { sJson.clear(); }

    int runInTurn() override {
        auto outcome = describeMapAt(sMap, "map", &descriptionJson, host::gdal::dataHosts(), messages(),
                                     bAllowConnections);
        if (!outcome.sProblem.empty())
            keep({outcome.sProblem});
        sJson = std::move(outcome.sText);
        return static_cast<int>(outcome.exitCode);
    }

    void refused(const std::vector<std::string>& /*problems*/) override {}
};

const char* halvane_version(void) {
    return version().data();
}

halvane_description* halvane_description_new(const char* map) {
    try {
        auto pDescription = std::make_unique<halvane_description>();
        static_cast<void>(
            pDescription->set("halvane_description_new", map != nullptr, [&] { pDescription->sMap = map; }));
        return pDescription.release();
    } catch (...) {
        return nullptr;
    }
}

void halvane_description_free(halvane_description* pDescription) {
    const std::unique_ptr<halvane_description> pOwned(pDescription);
}

int halvane_description_on_message(halvane_description* pDescription, halvane_message callback, void* user) {
    if (pDescription == nullptr)
        return -1;
    pDescription->messages().tell(callback, user);
    return 0;
}

int halvane_description_allow_connections(halvane_description* pDescription, int allow) {
    return pDescription == nullptr
               ? -1
               : pDescription->set("halvane_description_allow_connections", allow == 0 || allow == 1,
                                   [&] { pDescription->bAllowConnections = allow == 1; });
}

int halvane_description_run(halvane_description* pDescription) {
    return pDescription == nullptr ? static_cast<int>(HALVANE_REFUSED) : pDescription->run();
}

void halvane_description_cancel(halvane_description* pDescription) {
    if (pDescription != nullptr)
        pDescription->cancel();
}

const char* halvane_description_error(const halvane_description* pDescription) {
    return pDescription == nullptr ? "there is no description" : pDescription->error();
}

const char* halvane_description_json(const halvane_description* pDescription) {
    return pDescription == nullptr ? "" : pDescription->sJson.c_str();
}
