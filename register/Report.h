// What the program says while it works: a line before each thing it does.
#pragma once

#include <string>
#include <vector>

namespace registering {

/// Findings and progress go to standard output at once, failures to standard error.
class Report {
  public:
    void heading(const std::string& text) const;
    /// Something is as it should be.
    void ok(const std::string& text) const;
    /// Something is not, and what to do about it.
    void wrong(const std::string& text, const std::string& advice);
    /// Something that one should know, but that stops nothing.
    void note(const std::string& text) const;
    /// What is done next.
    void step(const std::string& text) const;
    /// A failure.
    void error(const std::string& text) const;
    /// The last word.
    void result(const std::string& text) const;

    /// How often wrong() was called.
    unsigned problems() const { return _problems; }

  private:
    unsigned _problems = 0;
};

} // namespace registering
