#include "Brimquill/Palette/FileLooker.h"

#include "Brimquill/Palette/Thumbnails.h"
#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace brimquill {
namespace {

/// Within this many seconds nothing is looked at twice: a search that is being typed asks at every letter.
constexpr double recentSeconds = 2;
constexpr std::size_t knownLimit = 200;
/// What tells the key of a picture from that of a list of files.
constexpr std::string_view picturePrefix = "picture:";

bool fileExists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

std::string pictureSize(const std::string& path) {
    const auto size = uprightSize(QImageReader(QString::fromStdString(path)));
    return size.isValid() ? std::to_string(size.width()) + " × " + std::to_string(size.height()) : std::string();
}

FileFacts lookAt(const std::string& key) {
    if (key.starts_with(picturePrefix)) {
        const auto path = key.substr(picturePrefix.size());
        return {fileExists(path), pictureSize(path)};
    }
    const auto paths = text::split(key, '\n');
    return {std::any_of(paths.begin(), paths.end(), fileExists), {}};
}

}  // namespace

FileLooker::FileLooker(platform::RunLoop& runLoop, std::function<void(const Found&)> changed)
    : runLoop_(runLoop), changed_(std::move(changed)) {}

std::string FileLooker::keyOf(const ClipItem& item) {
    if (item.id < 0) return {};
    if (item.kind == ClipKind::file) return item.text;
    if (item.kind == ClipKind::image && item.imagePath) return std::string(picturePrefix) + *item.imagePath;
    return {};
}

FileFacts FileLooker::facts(const ClipItem& item) {
    auto key = keyOf(item);
    if (key.empty()) return {.exists = item.kind != ClipKind::file, .pictureSize = {}};
    const auto found = known_.find(key);
    const bool isRecent = found != known_.end() && runLoop_.uptime() - found->second.seen < recentSeconds;
    auto facts = found == known_.end() ? FileFacts{} : found->second.facts;
    if (!isRecent) {
        wanted_.insert(std::move(key));
        look();
    }
    return facts;
}

/// One look at a time: files that never answer keep one thread, not many.
void FileLooker::look() {
    if (std::exchange(isLooking_, true)) return;
    runLoop_.async([this, alive = std::weak_ptr<bool>(alive_)] {
        if (alive.expired()) return;
        auto work = [this, alive, keys = std::exchange(wanted_, {}), &runLoop = runLoop_] {
            Found found;
            for (const auto& key : keys)
                found.emplace(key, lookAt(key));
            runLoop.async([this, alive, found = std::move(found)] {
                if (!alive.expired()) take(found);
            });
        };
        runLoop_.global(platform::QualityOfService::userInitiated, std::move(work));
    });
}

void FileLooker::take(const Found& found) {
    isLooking_ = false;
    Found changed;
    for (const auto& [key, facts] : found) {
        const auto known = known_.find(key);
        if (facts != (known == known_.end() ? FileFacts{} : known->second.facts)) changed.emplace(key, facts);
        if (known == known_.end() && known_.size() >= knownLimit) known_.clear();
        known_[key] = {facts, runLoop_.uptime()};
    }
    if (!wanted_.empty()) look();
    if (!changed.empty()) changed_(changed);
}

}  // namespace brimquill
