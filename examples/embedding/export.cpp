// export MAP CONTROL OUTPUT: an export with its progress and what is worth knowing of it.
#include <halvane.hpp>
#include <iostream>

int main(int argc, char** argv) try {
    if (argc != 4)
        return 2;
    halvane::Export run(argv[2], argv[3]);
    run.map(argv[1]).onProgress([](std::uint64_t items) {
        std::cerr << items << " items\n";
        return true; // false would cancel
    });
    const halvane::Outcome outcome = run.run();
    if (outcome == halvane::Outcome::Written || outcome == halvane::Outcome::Incomplete)
        std::cout << run.report();
    else
        std::cerr << run.error() << '\n';
    return static_cast<int>(outcome);
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 4;
}
