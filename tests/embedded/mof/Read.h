// Shorthands for tests that read a text.
#pragma once

#include "mof/Mof.h"

#include <gtest/gtest.h>

/// The only declaration of `text`, which must be a `T`.
template <typename T>
T readOne(const std::string& text) {
    const auto declarations = embedded::mof::readText(text, "t.mof");
    EXPECT_EQ(declarations.size(), 1U) << text;
    return std::get<T>(declarations.at(0).what);
}

/// The message with which `text` is refused; empty when it is read.
inline std::string refusal(const std::string& text) {
    try {
        embedded::mof::readText(text, "t.mof");
    } catch (const embedded::mof::MofError& error) {
        return error.what();
    }
    return {};
}
