// The main function of a fuzz target where libFuzzer is not: plays inputs that are kept, one after
// the other. The last name that is said is that of the input which broke a rule.
#include "fuzz/Fuzz.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr const char* usage =
    "usage: fuzz_NAME FILE-OR-FOLDER...\n"
    "Plays each file, and each file in a folder, to the target; ends with a signal when a rule is\n"
    "broken, else with 0. To look for new inputs: scripts/fuzz.sh NAME TIME\n";

std::set<fs::path> inputsIn(const fs::path& where) {
    if (!fs::is_directory(where))
        return {where};
    std::set<fs::path> inputs;
    for (const fs::directory_entry& entry : fs::directory_iterator(where))
        if (entry.is_regular_file())
            inputs.insert(entry.path());
    if (inputs.empty())
        throw std::runtime_error(where.string() + " holds no input");
    return inputs;
}

void play(const fs::path& input) {
    std::string bytes(fs::file_size(input), '\0');
    if (!std::ifstream(input).read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        throw std::runtime_error("cannot read " + input.string());
    std::fprintf(stderr, "%s\n", input.c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argv[1] == std::string("--help")) {
        std::fputs(usage, argc < 2 ? stderr : stdout);
        return argc < 2 ? 2 : 0;
    }
    try {
        for (int i = 1; i < argc; ++i) {
            const std::set<fs::path> inputs = inputsIn(argv[i]);
            std::for_each(inputs.begin(), inputs.end(), play);
        }
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "%s: %s (try --help)\n", argv[0], error.what());
        return 2;
    }
}
