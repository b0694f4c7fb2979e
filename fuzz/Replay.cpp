// Runs a target on files, and on random variations of them, where the compiler has no fuzzer of its own.
//   halvane_fuzz_TARGET [--random N] FILE_OR_FOLDER…

#include "fuzz/Target.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes contentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(stream), {});
}

std::vector<Bytes> inputsAt(const std::filesystem::path& path) {
    std::vector<Bytes> inputs;
    if (std::filesystem::is_directory(path)) {
        for (const auto& entry : std::filesystem::directory_iterator(path))
            inputs.push_back(contentOf(entry.path()));
    } else {
        inputs.push_back(contentOf(path));
    }
    return inputs;
}

/// The same numbers at each run.
class Variations {
public:
    explicit Variations(const std::vector<Bytes>& inputs) : inputs_(inputs) {}

    Bytes next() {
        Bytes bytes = inputs_[below(inputs_.size())];
        for (std::size_t n = 1 + below(4); n > 0; --n)
            vary(bytes);
        return bytes;
    }

private:
    std::size_t below(std::size_t nEnd) { return random_() % nEnd; }
    std::uint8_t byte() { return static_cast<std::uint8_t>(random_()); }

    void vary(Bytes& bytes) {
        const auto at = [&] { return bytes.begin() + static_cast<std::ptrdiff_t>(below(bytes.size() + 1)); };
        switch (bytes.empty() ? 0 : below(4)) {
        case 0:
            bytes.insert(at(), byte());
            break;
        case 1:
            bytes[below(bytes.size())] = byte();
            break;
        case 2:
            bytes.erase(at(), bytes.end());
            break;
        default: {
            const Bytes& other = inputs_[below(inputs_.size())];
            bytes.insert(at(), other.begin(), other.end());
        }
        }
    }

    const std::vector<Bytes>& inputs_;
    std::mt19937 random_;
};

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    unsigned long nRandom = 0;
    std::vector<Bytes> inputs;
    for (std::size_t n = 0; n < arguments.size(); ++n) {
        if (arguments[n] == "--random" && n + 1 < arguments.size()) {
            nRandom = std::strtoul(std::string(arguments[++n]).c_str(), nullptr, 10);
            continue;
        }
        for (Bytes& input : inputsAt(arguments[n]))
            inputs.push_back(std::move(input));
    }
    if (inputs.empty()) {
        std::fputs("There is no input\n", stderr);
        return 2;
    }
    for (const Bytes& input : inputs)
        LLVMFuzzerTestOneInput(input.data(), input.size());
    Variations variations(inputs);
    for (unsigned long n = 0; n < nRandom; ++n) {
        const Bytes input = variations.next();
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%zu inputs and %lu variations\n", inputs.size(), nRandom);
    return 0;
}
