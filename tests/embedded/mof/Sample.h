#pragma once

#include <string>

/// A text with every construct of the grammar, without includes.
extern const std::string sampleText;
