// Whether the module mutex is free, asked from another thread: its holder may lock it again.
#pragma once

#include "common/ModuleState.h"

#include <chrono>
#include <future>
#include <memory>
#include <thread>

namespace testsupport {

/// False when another thread cannot have the mutex within `atMost`. The thread that asks is then
/// left behind, waiting.
inline bool moduleMutexIsFree(std::chrono::milliseconds atMost = std::chrono::seconds(5)) {
    const auto had = std::make_shared<std::promise<void>>();
    std::thread([had] {
        _mutex_lock();
        _mutex_unlock();
        had->set_value();
    }).detach();
    return had->get_future().wait_for(atMost) == std::future_status::ready;
}

} // namespace testsupport
