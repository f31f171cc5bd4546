#pragma once

#include "Platform/Headless/HeadlessRunLoop.h"
#include "Platform/X11/X11Pasteboard.h"

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// What the tests of the X11 clipboard need around it: a server, other programs, a main thread.
namespace brimquill::platform::testing {

/// A child process whose standard output is collected. Killed when it goes.
class Process final {
public:
    /// `environment` is one "NAME=value" more than the test's own.
    Process(const std::vector<std::string>& command, const std::string& environment);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Everything written so far.
    const std::string& output();
    /// Whether the whole line was written so many times, or waits for it until the output ends.
    bool waitForLine(const std::string& line, int times = 1);
    /// Collects the output to its end and gives the exit status; -1 for a death by signal.
    int wait();
    void kill();
    /// Asks it to end.
    void terminate() const;

private:
    bool readSome(int timeoutMilliseconds);

    pid_t pid_ = -1;
    int descriptor_ = -1;
    std::string output_;
};

/// An X server of its own, without a window manager, on a free display.
class XServer final {
public:
    XServer();
    /// ":7", say.
    const std::string& display() const { return display_; }
    void kill() { process_->kill(); }
    /// The one that all tests of a program share.
    static XServer& shared();

private:
    std::unique_ptr<Process> process_;
    std::string display_;
};

/// The pasteboard under test on a server, its main thread being the test's.
class SelectionWorld final {
public:
    explicit SelectionWorld(X11PasteboardOptions options = {}, XServer& server = XServer::shared());

    X11Pasteboard& pasteboard() { return *pasteboard_; }
    RunLoop& runLoop() { return runLoop_; }
    void destroyPasteboard() { pasteboard_.reset(); }
    /// Runs the main thread until the condition holds. False after a minute.
    bool waitFor(const std::function<bool()>& condition);
    bool waitForLog(const std::string& part);
    std::unique_ptr<Process> peer(const std::vector<std::string>& arguments);
    /// What another program gets for `target`; "refused" when it was refused.
    std::string pasted(const std::string& target, const std::string& selection = "CLIPBOARD");

private:
    XServer& server_;
    HeadlessRunLoop runLoop_;
    std::mutex logMutex_;
    std::string log_;
    std::unique_ptr<X11Pasteboard> pasteboard_;
};

/// The bytes of the peer's `--offer-pattern`.
Bytes pattern(std::size_t size);

}  // namespace brimquill::platform::testing
