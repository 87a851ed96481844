#include "register/CommandLine.h"
#include "register/Commands.h"
#include "register/Process.h"

#include <cstring>
#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    using namespace registering;
    if (argc == 3 && std::strcmp(argv[1], probeOption) == 0)
        return probe(argv[2]);
    const CommandLine commandLine = readCommandLine(argc, argv);
    if (!commandLine.settings)
        return static_cast<int>(commandLine.exitCode);
    takeSignals();
    try {
        return static_cast<int>(run(*commandLine.settings));
    } catch (const std::exception& error) {
        std::cerr << "serverprofile-register: " << error.what() << "; nothing was changed\n";
        return static_cast<int>(ExitCode::Check);
    }
}
