#include "cli/CommandLine.h"

int main(int lArguments, char** aArguments) {
    return halvane::cli::runCommandLine(lArguments, aArguments);
}
