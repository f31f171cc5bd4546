#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/RunLoop.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brimquill {

/// Looks at the files of a clip and reads them, away from the main thread and each under a deadline: a disk across a
/// network may never answer. Answers come on the main thread, one for each question, later than the question unless it
/// is refused. Main thread.
class PasteFiles final {
public:
    /// Seconds that a disk has to say which files are there, and to give one out.
    static constexpr double lookDeadline = 2, readDeadline = 5;
    /// So many questions may be overdue, each of which keeps a thread for as long as its disk is silent. Further ones
    /// are answered at once, as though their time were up.
    static constexpr int overdueLimit = 2;
    /// A file larger than this many bytes is not read.
    static constexpr std::size_t maximumSize = std::size_t{512} << 20;

    explicit PasteFiles(platform::RunLoop& runLoop) : runLoop_(runLoop) {}

    /// Those of `paths` that exist, in their order; none when the time is up.
    void findExisting(std::vector<std::string> paths, std::function<void(const std::vector<std::string>&)> then);
    /// The file's bytes; null when it cannot be read, is too large or the time is up.
    void read(std::string path, std::function<void(const platform::SharedBytes&)> then);

private:
    template <typename Answer>
    void ask(double deadline, std::function<Answer()> question, std::function<void(const Answer&)> then);

    platform::RunLoop& runLoop_;
    std::shared_ptr<int> overdue_ = std::make_shared<int>(0);
};

}  // namespace brimquill
