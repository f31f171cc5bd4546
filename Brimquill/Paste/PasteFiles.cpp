#include "Brimquill/Paste/PasteFiles.h"

#include "BrimquillCore/Foundation/Files.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace brimquill {
namespace {

bool isThere(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

}  // namespace

/// The answer and the end of the time race for `then`; both come on the main thread.
template <typename Answer>
void PasteFiles::ask(double deadline, std::function<Answer()> question, std::function<void(const Answer&)> then) {
    if (*overdue_ >= overdueLimit) return then({});
    const auto waiting = std::make_shared<std::function<void(const Answer&)>>(std::move(then));
    const auto settle = [waiting](const Answer& answer) {
        const auto receiver = std::exchange(*waiting, nullptr);
        if (receiver) receiver(answer);
        return receiver != nullptr;
    };
    runLoop_.asyncAfter(deadline, [settle, waiting, overdue = overdue_] {
        if (*waiting) ++*overdue;
        settle({});
    });
    auto work = [question = std::move(question), settle, overdue = overdue_, &runLoop = runLoop_] {
        runLoop.async([settle, overdue, answer = question()] {
            if (!settle(answer)) --*overdue;
        });
    };
    runLoop_.global(platform::QualityOfService::userInitiated, std::move(work));
}

void PasteFiles::findExisting(std::vector<std::string> paths,
                              std::function<void(const std::vector<std::string>&)> then) {
    ask<std::vector<std::string>>(
        lookDeadline,
        [paths = std::move(paths)] {
            auto found = paths;
            std::erase_if(found, [](const std::string& path) { return !isThere(path); });
            return found;
        },
        std::move(then));
}

void PasteFiles::read(std::string path, std::function<void(const platform::SharedBytes&)> then) {
    ask<platform::SharedBytes>(
        readDeadline,
        [path = std::move(path)]() -> platform::SharedBytes {
            const auto bytes = files::readFile(path, maximumSize);
            return bytes ? std::make_shared<platform::Bytes>(bytes->begin(), bytes->end()) : nullptr;
        },
        std::move(then));
}

}  // namespace brimquill
