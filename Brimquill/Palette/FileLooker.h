#pragma once

#include "Brimquill/Palette/Card.h"
#include "Platform/RunLoop.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace brimquill {

/// Looks at the files of clips away from the main thread, for a disk may take long to answer. Main thread.
class FileLooker final {
public:
    /// By `keyOf` the clip.
    using Found = std::map<std::string, FileFacts>;

    /// `changed` is called on the main thread with what turned out to be other than `facts` had said.
    FileLooker(platform::RunLoop& runLoop, std::function<void(const Found&)> changed);

    /// What was last seen of the clip's files; of files never seen, that they are there. Looks anew when that is not
    /// quite recent.
    FileFacts facts(const ClipItem& item);
    /// Names the files of a clip; empty for a clip without any.
    static std::string keyOf(const ClipItem& item);

private:
    struct Known {
        FileFacts facts;
        double seen = 0;
    };
    void look();
    void take(const Found& found);

    platform::RunLoop& runLoop_;
    std::function<void(const Found&)> changed_;
    std::map<std::string, Known> known_;
    std::set<std::string> wanted_;
    bool isLooking_ = false;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace brimquill
