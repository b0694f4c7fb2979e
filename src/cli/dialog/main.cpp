#include "cli/dialog/DialogProgram.h"
#include "host/gdal/GdalHost.h"

int main(int lArguments, char** aArguments) {
    return halvane::cli::runDialogProgram(halvane::host::gdal::dataHosts(), lArguments, aArguments);
}
