#include "Brimquill/Surfaces/OrganizeView.h"

#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brimquill {
namespace {

/// More than a line can hold.
constexpr std::size_t previewLimit = 200;

/// A path of nothing but slashes names none.
bool namesPinboard(const std::string& path) {
    const auto parts = text::split(path, '/');
    return std::any_of(parts.begin(), parts.end(), [](const auto& part) { return !text::trimmed(part).empty(); });
}

}  // namespace

OrganizeView::OrganizeView(ClipItem item, Field initialFocus, Wording wording, ClipStore& store)
    : item_(std::move(item)), initialFocus_(initialFocus), wording_(std::move(wording)), store_(store) {
    tags = QString::fromStdString(text::join(item_.tags, ", "));
    folderName = QString::fromStdString(folderPath());
}

std::string OrganizeView::folderPath() const {
    if (!item_.folderId) return {};
    const auto folders = store_.folders();
    const auto found = std::find_if(folders.begin(), folders.end(),
                                    [&](const ClipFolder& folder) { return folder.id == *item_.folderId; });
    return found == folders.end() ? std::string() : store_.path(*found);
}

QString OrganizeView::preview() const {
    const auto shown = item_.name ? *item_.name : item_.preview();
    return QString::fromStdString(text::replacingNewlines(text::prefix(shown, previewLimit), " "));
}

void OrganizeView::save() {
    std::vector<std::string> pieces;
    for (const auto& piece : text::split(tags.toStdString(), ','))
        pieces.push_back(text::trimmed(piece));
    store_.setTags(item_.id, pieces);
    const auto path = text::trimmed(folderName.toStdString());
    if (!namesPinboard(path)) {
        store_.setFolder(item_.id, std::nullopt);
    } else if (const auto folder = store_.folder(path); folder.id != 0) {
        store_.setFolder(item_.id, folder.id);
    }
    Q_EMIT done();
}

}  // namespace brimquill
