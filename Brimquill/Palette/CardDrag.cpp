#include "Brimquill/Palette/CardDrag.h"

#include "BrimquillCore/Foundation/Files.h"
#include "BrimquillCore/Foundation/Text.h"

#include <QDrag>
#include <QGuiApplication>
#include <QMimeDatabase>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QUrl>

#include <utility>

namespace brimquill {
namespace {

/// A picture with more bytes is offered as a file alone.
constexpr std::size_t largestPicture = std::size_t{64} << 20;

/// A picture's file, and the picture itself for who prefers that.
class PictureData final : public QMimeData {
public:
    explicit PictureData(std::string path) : path_(std::move(path)) {
        const auto file = QString::fromStdString(path_);
        setUrls({QUrl::fromLocalFile(file)});
        const auto type = QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchExtension).name();
        if (type.startsWith(QStringLiteral("image/"))) type_ = type;
    }

    bool hasFormat(const QString& type) const override { return formats().contains(type); }
    QStringList formats() const override {
        auto all = QMimeData::formats();
        if (!type_.isEmpty()) all.append(type_);
        return all;
    }

protected:
    QVariant retrieveData(const QString& type, QMetaType preferred) const override {
        if (type_.isEmpty() || type != type_) return QMimeData::retrieveData(type, preferred);
        const auto bytes = files::readFile(path_, largestPicture);
        return bytes ? QByteArray(bytes->data(), static_cast<qsizetype>(bytes->size())) : QByteArray();
    }

private:
    std::string path_;
    QString type_;
};

QPixmap pictureOf(const QQuickItem& card) {
    const auto whole = card.window()->grabWindow();
    const auto ratio = whole.devicePixelRatio();
    const auto place = card.mapRectToScene(QRectF(0, 0, card.width(), card.height()));
    const QRect pixels = QRectF(place.topLeft() * ratio, place.size() * ratio).toRect();
    QImage faded(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    faded.fill(Qt::transparent);
    QPainter painter(&faded);
    painter.setOpacity(0.8);
    painter.drawImage(QPoint(0, 0), whole.copy(pixels));
    painter.end();
    faded.setDevicePixelRatio(ratio);
    return QPixmap::fromImage(faded);
}

}  // namespace

std::optional<std::string> draggedFile(const ClipItem& item) {
    if (item.kind == ClipKind::image) return item.imagePath;
    if (item.kind != ClipKind::file) return std::nullopt;
    const auto paths = text::split(item.text, '\n');
    if (paths.empty()) return std::nullopt;
    return paths.front();
}

std::unique_ptr<QMimeData> cardDragData(const ClipItem& item, ClipFile file) {
    const auto path = file == ClipFile::exists ? draggedFile(item) : std::nullopt;
    if (path && item.kind == ClipKind::image) return std::make_unique<PictureData>(*path);
    auto data = std::make_unique<QMimeData>();
    if (path) {
        data->setUrls({QUrl::fromLocalFile(QString::fromStdString(*path))});
    } else {
        data->setText(QString::fromStdString(item.text));
    }
    return data;
}

void CardDragger::begin(const ClipItem& item, QQuickItem& card) {
    if (isDragging_) return;
    const auto dragLater = [this, alive = std::weak_ptr<bool>(alive_), press = ++presses_, item,
                            view = QPointer(&card)](ClipFile file) {
        // Later: the press that began it is still being delivered, and the drag ends only with the button.
        runLoop_.async([this, alive, press, item, view, file] {
            if (!alive.expired() && press == presses_ && view) drag(item, file, *view);
        });
    };
    const auto path = draggedFile(item);
    if (!path) return dragLater(ClipFile::missing);
    files_.findExisting({*path}, [dragLater, alive = std::weak_ptr<bool>(alive_)](const auto& found) {
        if (!alive.expired()) dragLater(found.empty() ? ClipFile::missing : ClipFile::exists);
    });
}

void CardDragger::drag(const ClipItem& item, ClipFile file, QQuickItem& card) {
    auto* const window = card.window();
    // Who has let go already drags nothing; a drag begun then would hang at the pointer.
    const bool isHeld = QGuiApplication::mouseButtons().testFlag(Qt::LeftButton);
    if (isDragging_ || !isHeld || window == nullptr || !window->isVisible()) return;
    isDragging_ = true;
    const std::weak_ptr<bool> alive = alive_;
    // The toolkit owns and ends it.
    auto* const drag = new QDrag(window);
    drag->setMimeData(cardDragData(item, file).release());
    drag->setPixmap(pictureOf(card));
    // A copy alone: a program that moved the file would take the picture away from the clip.
    drag->exec(Qt::CopyAction);
    if (!alive.expired()) isDragging_ = false;
}

}  // namespace brimquill
