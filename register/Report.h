// What the program says while it works: a line before each thing it does.
#pragma once

#include <iostream>
#include <string>

namespace registering {

/// Writes findings and progress to standard output, failures to standard error, each at once.
class Report {
  public:
    void heading(const std::string& text) const { std::cout << text << ":" << std::endl; }
    /// Something is as it should be.
    void ok(const std::string& text) const { std::cout << "  ok     " << text << std::endl; }
    /// Something is not, and what to do about it.
    void wrong(const std::string& text, const std::string& advice) {
        ++_problems;
        std::cout << "  WRONG  " << text << "\n         " << advice << std::endl;
    }
    /// Something that one should know, but that stops nothing.
    void note(const std::string& text) const { std::cout << "  note   " << text << std::endl; }
    /// What is done next.
    void step(const std::string& text) const { std::cout << "  " << text << std::endl; }
    /// A failure.
    void error(const std::string& text) const {
        std::cerr << "serverprofile-register: " << text << std::endl;
    }
    /// The last line.
    void result(const std::string& text) const { std::cout << text << std::endl; }

    /// How often wrong() was called.
    unsigned problems() const { return _problems; }

  private:
    unsigned _problems = 0;
};

} // namespace registering
