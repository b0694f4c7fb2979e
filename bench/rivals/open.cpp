// Does nothing but load the data library and open a file.

#include "Program.h"

int main(int argc, char** argv) {
    using namespace halvane::bench;
    return runProgram(argc, argv, [](const char* pData, const char*) { (void)openDataset(pData); });
}
