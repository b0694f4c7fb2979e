#include "cli/CommandLine.h"
#include "host/gdal/GdalHost.h"

int main(int lArguments, char** aArguments) {
    return halvane::cli::runCommandLine(halvane::host::gdal::dataHosts(), lArguments, aArguments);
}
