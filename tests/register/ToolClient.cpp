// Stands under the names of the server's tools and lets a test answer for them: sends its name and
// its arguments to the socket REGISTER_TEST_SOCKET, and does what comes back, "CODE LENGTH\n", so
// many bytes for standard output, the rest for standard error. A negative code is a signal.
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

int connectTo(const char* path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
    const int end = socket(AF_UNIX, SOCK_STREAM, 0);
    return end >= 0 && connect(end, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0
               ? end
               : -1;
}

std::string ask(int end, const std::string& question) {
    std::string answer;
    if (send(end, question.data(), question.size(), 0) < 0)
        return answer;
    shutdown(end, SHUT_WR);
    std::array<char, 65536> buffer{};
    for (ssize_t count = 0; (count = recv(end, buffer.data(), buffer.size(), 0)) > 0;)
        answer.append(buffer.data(), static_cast<std::size_t>(count));
    return answer;
}

} // namespace

int main(int argc, char** argv) {
    const char* path = std::getenv("REGISTER_TEST_SOCKET");
    const int end = path == nullptr ? -1 : connectTo(path);
    std::string question;
    for (int i = 0; i < argc; ++i)
        question.append(argv[i]).push_back('\0');
    const std::string answer = end < 0 ? "" : ask(end, question);
    int code = 0;
    std::size_t length = 0;
    const std::size_t header = answer.find('\n');
    if (header == std::string::npos || std::sscanf(answer.c_str(), "%d %zu", &code, &length) != 2) {
        std::fputs("the test does not answer\n", stderr);
        return 99;
    }
    const std::string out = answer.substr(header + 1, length);
    const std::string err = answer.substr(header + 1 + length);
    std::fwrite(out.data(), 1, out.size(), stdout);
    std::fwrite(err.data(), 1, err.size(), stderr);
    std::fflush(nullptr);
    if (code < 0)
        raise(-code);
    return code;
}
