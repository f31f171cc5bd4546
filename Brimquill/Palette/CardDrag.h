#pragma once

#include "BrimquillCore/ClipItem.h"

#include <QMimeData>

#include <memory>

class QQuickItem;

namespace brimquill {

enum class ClipFile { exists, missing };

/// What a drag of the clip offers to other programs: the first file of a file clip; the file of a picture and what is
/// in it, read only when somebody asks; else, and where the file is missing, the stored text.
std::unique_ptr<QMimeData> cardDragData(const ClipItem& item, ClipFile file);

/// Drags the clip out of the palette, with the picture of its card under the pointer. Returns when the user lets go;
/// events are handled meanwhile. Main thread.
void dragOut(const ClipItem& item, ClipFile file, QQuickItem& card);

}  // namespace brimquill
