#pragma once

#include <exception>
#include <iostream>

namespace halvane::bench {

/// Runs a program PROGRAM DATA DOCUMENT that needs no data library.
template<class Write>
int runAlone(int argc, char** argv, const Write& write) {
    if (argc != 3) {
        std::cerr << "usage: " << argv[0] << " DATA DOCUMENT\n";
        return 2;
    }
    try {
        write(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << argv[0] << ": " << error.what() << '\n';
        return 1;
    }
}

} // namespace halvane::bench
