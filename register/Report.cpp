#include "register/Report.h"

#include <iostream>

namespace registering {

void Report::heading(const std::string& text) const {
    std::cout << text << ":" << std::endl;
}

void Report::ok(const std::string& text) const {
    std::cout << "  ok     " << text << std::endl;
}

void Report::wrong(const std::string& text, const std::string& advice) {
    ++_problems;
    std::cout << "  WRONG  " << text << "\n         " << advice << std::endl;
}

void Report::note(const std::string& text) const {
    std::cout << "  note   " << text << std::endl;
}

void Report::step(const std::string& text) const {
    std::cout << "  " << text << std::endl;
}

void Report::error(const std::string& text) const {
    std::cerr << "serverprofile-register: " << text << std::endl;
}

void Report::result(const std::string& text) const {
    std::cout << text << std::endl;
}

} // namespace registering
