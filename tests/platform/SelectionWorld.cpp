#include "tests/platform/SelectionWorld.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace brimquill::platform::testing {

Process::Process(const std::vector<std::string>& command, const std::string& environment) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    descriptor_ = ends[0];
    const std::string name = environment.substr(0, environment.find('=') + 1);
    std::vector<char*> variables{const_cast<char*>(environment.c_str())};
    for (char** variable = environ; *variable; ++variable)
        if (!std::string_view(*variable).starts_with(name)) variables.push_back(*variable);
    variables.push_back(nullptr);
    // Dies with the tests, also when they crash.
    std::vector<std::string> guarded{"setpriv", "--pdeathsig", "KILL"};
    guarded.insert(guarded.end(), command.begin(), command.end());
    std::vector<char*> words;
    words.reserve(guarded.size() + 1);
    for (const std::string& word : guarded)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    const int failed = posix_spawnp(&pid_, words[0], &actions, nullptr, words.data(), variables.data());
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (failed) throw std::runtime_error("cannot start " + command[0]);
}

Process::~Process() {
    kill();
    close(descriptor_);
}

bool Process::readSome(int timeoutMilliseconds) {
    pollfd waited{descriptor_, POLLIN, 0};
    if (poll(&waited, 1, timeoutMilliseconds) <= 0) return false;
    char buffer[65536];
    const ssize_t length = read(descriptor_, buffer, sizeof buffer);
    if (length > 0) output_.append(buffer, static_cast<std::size_t>(length));
    return length > 0;
}

const std::string& Process::output() {
    while (readSome(0)) {
    }
    return output_;
}

bool Process::waitForLine(const std::string& line, int times) {
    const auto written = [&] {
        int count = 0;
        std::istringstream lines(output_.substr(0, output_.rfind('\n') + 1));
        for (std::string one; std::getline(lines, one);)
            if (one == line) ++count;
        return count;
    };
    while (written() < times)
        if (!readSome(60'000)) return false;
    return true;
}

int Process::wait() {
    while (readSome(60'000)) {
    }
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void Process::kill() {
    if (pid_ < 0) return;
    ::kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

void Process::terminate() const {
    ::kill(pid_, SIGTERM);
}

XServer::XServer()
    : process_(std::make_unique<Process>(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0",
                                                                  "320x240x24", "-nolisten", "tcp", "-noreset"},
                                         "LC_ALL=C")) {
    // It writes the number of the display once it takes clients.
    const auto bound = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (process_->output().find('\n') == std::string::npos) {
        if (std::chrono::steady_clock::now() > bound) throw std::runtime_error("Xvfb does not start");
        std::this_thread::yield();
    }
    display_ = ":" + process_->output().substr(0, process_->output().find('\n'));
}

XServer& XServer::shared() {
    static XServer server;
    return server;
}

SelectionWorld::SelectionWorld(X11PasteboardOptions options, XServer& server) : server_(server) {
    if (options.display.empty()) options.display = server.display();
    options.log = [this](std::string_view line) {
        const std::lock_guard lock(logMutex_);
        log_ += std::string(line) + "\n";
    };
    pasteboard_ = std::make_unique<X11Pasteboard>(runLoop_, std::move(options));
}

bool SelectionWorld::waitFor(const std::function<bool()>& condition) {
    const auto bound = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    for (;;) {
        runLoop_.run();
        if (condition()) return true;
        if (std::chrono::steady_clock::now() > bound) return false;
        poll(nullptr, 0, 1);  // the main thread has nothing else to do
    }
}

bool SelectionWorld::waitForLog(const std::string& part) {
    return waitFor([&] {
        const std::lock_guard lock(logMutex_);
        return log_.find(part) != std::string::npos;
    });
}

std::unique_ptr<Process> SelectionWorld::peer(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{SELECTION_PEER};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return std::make_unique<Process>(command, "DISPLAY=" + server_.display());
}

std::string SelectionWorld::pasted(const std::string& target, const std::string& selection) {
    const auto requestor = peer({"get", target, "--selection", selection});
    const int status = requestor->wait();
    if (status == 1) return "refused";
    return status == 0 ? requestor->output() : "status " + std::to_string(status);
}

Bytes pattern(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 31 + i / 251);
    return bytes;
}

}  // namespace brimquill::platform::testing
