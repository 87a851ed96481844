// A library that is no provider module.
extern "C" int theAnswer() { return 42; }
