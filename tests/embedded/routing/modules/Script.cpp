#include "Script.h"

#include <map>
#include <mutex>

namespace toy {

namespace {

std::mutex mutex;
std::map<std::string, Script>& scripts() {
    static std::map<std::string, Script> all;
    return all;
}
std::vector<std::string>& events() {
    static std::vector<std::string> all;
    return all;
}

} // namespace

void Call::complete() const {
    if (instances != nullptr)
        instances->complete();
    if (paths != nullptr)
        paths->complete();
    if (objects != nullptr)
        objects->complete();
}

void setScript(const std::string& provider, const Script& script) {
    const std::lock_guard<std::mutex> lock(mutex);
    scripts()[provider] = script;
}

Script scriptOf(const std::string& provider) {
    const std::lock_guard<std::mutex> lock(mutex);
    return scripts()[provider];
}

void note(const std::string& event) {
    const std::lock_guard<std::mutex> lock(mutex);
    events().push_back(event);
}

std::vector<std::string> journal() {
    const std::lock_guard<std::mutex> lock(mutex);
    return events();
}

void reset() {
    const std::lock_guard<std::mutex> lock(mutex);
    scripts().clear();
    events().clear();
}

} // namespace toy
