#include "register/CommandLine.h"

#include <iostream>

int main(int argc, char** argv) {
    const registering::CommandLine commandLine = registering::readCommandLine(argc, argv);
    if (!commandLine.settings)
        return static_cast<int>(commandLine.exitCode);
    std::cerr << "serverprofile-register: the commands are still being written\n";
    return static_cast<int>(registering::ExitCode::Check);
}
