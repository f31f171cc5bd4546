#pragma once

#include "Brimquill/Paste/PasteFiles.h"
#include "BrimquillCore/ClipItem.h"

#include <QMimeData>

#include <memory>
#include <optional>
#include <string>

class QQuickItem;

namespace brimquill {

enum class ClipFile { exists, missing };

/// The file that a drag of the clip hands over: the first one of a file clip, or a picture's. Nothing for other clips.
std::optional<std::string> draggedFile(const ClipItem& item);

/// What a drag of the clip offers to other programs: its `draggedFile`, of a picture also what is in it, read only when
/// somebody asks; else, and where that file is missing, the stored text.
std::unique_ptr<QMimeData> cardDragData(const ClipItem& item, ClipFile file);

/// Drags cards out of the palette, one at a time. Main thread.
class CardDragger final {
public:
    explicit CardDragger(platform::RunLoop& runLoop) : runLoop_(runLoop), files_(runLoop) {}

    /// Drags the clip, with the picture of its card under the pointer, once it is known whether its file is there. Does
    /// nothing when by then the user has let go, the card is not on the screen any more, or another was pressed.
    void begin(const ClipItem& item, QQuickItem& card);
    /// From when the drag shows until the user lets go; events are handled meanwhile.
    bool isDragging() const { return isDragging_; }

private:
    void drag(const ClipItem& item, ClipFile file, QQuickItem& card);

    platform::RunLoop& runLoop_;
    PasteFiles files_;
    int presses_ = 0;
    bool isDragging_ = false;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace brimquill
