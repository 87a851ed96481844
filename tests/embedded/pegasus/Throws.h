// What a call throws, with its message.
#pragma once

#include <Pegasus/Common/Exception.h>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace apitest {

inline std::string text(const Pegasus::String& string) {
    return static_cast<const char*>(string.getCString());
}

/// Succeeds if `action` throws `Expected`, or a type derived from it, with exactly that message.
template <class Expected, class Action>
testing::AssertionResult throws(Action action, const std::string& message) {
    try {
        // Nested, because Expected may be Exception itself.
        try {
            action();
        } catch (const Expected& exception) {
            const std::string said = text(exception.getMessage());
            if (said == message)
                return testing::AssertionSuccess();
            return testing::AssertionFailure()
                   << "says \"" << said << "\" instead of \"" << message << '"';
        }
    } catch (const Pegasus::Exception& exception) {
        return testing::AssertionFailure()
               << "throws another type, saying \"" << text(exception.getMessage()) << '"';
    }
    return testing::AssertionFailure() << "throws nothing";
}

template <class Action>
testing::AssertionResult throwsUninitialized(Action action) {
    return throws<Pegasus::UninitializedObjectException>(action, "uninitialized object");
}

template <class Action>
testing::AssertionResult throwsTypeMismatch(Action action) {
    return throws<Pegasus::TypeMismatchException>(action, "type mismatch");
}

template <class Action>
testing::AssertionResult throwsOutOfBounds(Action action) {
    return throws<Pegasus::IndexOutOfBoundsException>(action, "index out of bounds");
}

template <class Action>
testing::AssertionResult throwsDynamicCastFailed(Action action) {
    return throws<Pegasus::DynamicCastFailedException>(action, "dynamic cast failed");
}

/// A call, by the name under which a failure reports it.
struct NamedCall {
    const char* name;
    std::function<void()> call;
};

inline void expectAllUninitialized(const std::vector<NamedCall>& calls) {
    for (const NamedCall& call : calls)
        EXPECT_TRUE(throwsUninitialized(call.call)) << call.name;
}

} // namespace apitest
