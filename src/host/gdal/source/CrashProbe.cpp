#include "host/gdal/source/CrashProbe.h"

#include "host/gdal/source/ArchiveMembers.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/Locations.h"

#include <ogrsf_frmts.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace halvane::host::gdal {

namespace {

constexpr const char* pCrashingDriver = "LIBKML";

bool holds(const std::string& sPath, std::string_view sSought) {
    // In an encoding of two bytes for each letter a zero stands between two.
    std::string sWide;
    for (const char c : sSought)
        sWide += sWide.empty() ? std::string(1, c) : std::string{'\0', c};
    std::ifstream stream(sPath, std::ios::binary);
    constexpr std::size_t nChunk = 1U << 16U;
    std::string sRead;
    do {
        // What is sought may begin in one piece and end in the next.
        sRead.erase(0, sRead.size() - std::min(sRead.size(), sWide.size()));
        const std::size_t nKept = sRead.size();
        sRead.resize(nKept + nChunk);
        stream.read(sRead.data() + nKept, nChunk);
        sRead.resize(nKept + static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
        if (sRead.find(sSought) != std::string::npos || sRead.find(sWide) != std::string::npos)
            return true;
    } while (stream);
    return false;
}

// The driver takes a file of any name for its own that begins so.
bool beginsAsKml(const std::string& sPath) {
    constexpr std::size_t nMost = 1024;
    std::string sRead(nMost, '\0');
    std::ifstream stream(sPath, std::ios::binary);
    stream.read(sRead.data(), nMost);
    sRead.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    return sRead.find("<kml") != std::string::npos;
}

// A track without times is read through a null pointer by some versions of the driver.
bool isKnownToCrash(const std::string& sPath) {
    const std::string sExtension = extensionOf(sPath);
    // One that is too large is not read at all.
    return (sExtension == "kmz" && membersOfArchive(sPath).sWhyNot.empty()) ||
           ((sExtension == "kml" || beginsAsKml(sPath)) && holds(sPath, "Track"));
}

// What this process does to tell of its own crashes is not for the other's.
void letSignalsEndTheProcess() {
    for (const int lSignal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGALRM})
        std::signal(lSignal, SIG_DFL);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    // Who cannot finish in this time has not crashed.
    constexpr unsigned lSeconds = 20;
    ::alarm(lSeconds);
}

[[noreturn]] void readAll(const std::string& sPath) {
    letSignalsEndTheProcess();
    Source source;
    source.sDisplayName = sPath;
    setDataInUse(&source);
    const LibraryCall call;
    const std::array<const char*, 2> aDrivers{pCrashingDriver, nullptr};
    const GDALDatasetUniquePtr pDataset(GDALDataset::Open(sPath.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY,
                                                          aDrivers.data(), nullptr, nullptr));
    const int lLayers = pDataset == nullptr ? 0 : pDataset->GetLayerCount();
    for (int lLayer = 0; lLayer < lLayers; ++lLayer) {
        OGRLayer* pLayer = pDataset->GetLayer(lLayer);
        while (OGRFeatureUniquePtr(pLayer->GetNextFeature()) != nullptr) {
        }
    }
    ::_exit(EXIT_SUCCESS);
}

} // namespace

std::string crashOnReading(const std::string& sPath) {
    if (!isKnownToCrash(sPath))
        return {};
    const pid_t lReader = ::fork();
    if (lReader == 0)
        readAll(sPath);
    int lStatus = 0;
    while (lReader > 0 && ::waitpid(lReader, &lStatus, 0) < 0)
        if (errno != EINTR)
            return {};
    const bool bCrashed = lReader > 0 && WIFSIGNALED(lStatus) && WTERMSIG(lStatus) != SIGALRM;
    return bCrashed ? "\"" + sPath + "\" cannot be read: the data library crashes on it in its driver \"" +
                          pCrashingDriver + "\"; convert the file, or give tracks their times"
                    : std::string();
}

} // namespace halvane::host::gdal
