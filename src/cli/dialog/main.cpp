#include "cli/dialog/DialogProgram.h"

int main(int lArguments, char** aArguments) {
    return halvane::cli::runDialogProgram(lArguments, aArguments);
}
