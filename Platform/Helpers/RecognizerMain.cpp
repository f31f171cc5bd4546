// The recogniser: reads one request a line from standard input and answers each with one line on standard output, both
// JSON. Request: {"path": "/picture.png", "low": true}, where "low" asks for a low priority from now on. Answer:
// {"codes": [...], "lines": [...]}. It ends with its input. It must be started with OMP_THREAD_LIMIT=1 in its
// environment: the recognition library reads that before main runs, and is several times slower without it.

#include "Platform/Helpers/PictureReader.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

namespace {

// A sanitizer reserves terabytes of addresses for its own books, so that no limit of them leaves the picture any.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr rlim_t addressSpace = RLIM_INFINITY;
#else
constexpr rlim_t addressSpace = rlim_t{3} << 30;
#endif

/// Decoders and the engine print what they think of a picture; the answers go out on a descriptor of their own.
int claimAnswers() {
    const int answers = dup(STDOUT_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY);
    if (nowhere >= 0) {
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    return answers;
}

bool writeAll(int descriptor, const std::string& text) {
    for (std::size_t written = 0; written < text.size();) {
        const auto count = write(descriptor, text.data() + written, text.size() - written);
        if (count <= 0) return false;
        written += static_cast<std::size_t>(count);
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const rlimit limit{addressSpace, addressSpace};
    setrlimit(RLIMIT_AS, &limit);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int answers = claimAnswers();
    const QCoreApplication application(argc, argv);  // finds the image format plug-ins
    brimquill::helpers::PictureReader reader;
    const int lowPriority = getpriority(PRIO_PROCESS, 0) + 10;
    for (std::string line; std::getline(std::cin, line);) {
        const auto request = nlohmann::json::parse(line, nullptr, false);
        if (!request.is_object() || !request.contains("path") || !request["path"].is_string()) return 2;
        if (request.value("low", nlohmann::json()) == true) setpriority(PRIO_PROCESS, 0, lowPriority);
        const auto reading = reader.read(request["path"].get<std::string>());
        const nlohmann::json answer{{"codes", reading.codes}, {"lines", reading.lines}};
        if (!writeAll(answers, answer.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) + "\n")) return 1;
    }
    return 0;
}
