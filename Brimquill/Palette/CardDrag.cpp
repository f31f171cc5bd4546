#include "Brimquill/Palette/CardDrag.h"

#include "BrimquillCore/Foundation/Files.h"
#include "BrimquillCore/Foundation/Text.h"

#include <QDrag>
#include <QMimeDatabase>
#include <QPainter>
#include <QPixmap>
#include <QQuickItem>
#include <QQuickWindow>
#include <QUrl>

#include <optional>
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

std::unique_ptr<QMimeData> cardDragData(const ClipItem& item, ClipFile file) {
    if (file == ClipFile::exists) {
        if (item.kind == ClipKind::image && item.imagePath) return std::make_unique<PictureData>(*item.imagePath);
        const auto paths = text::split(item.text, '\n');
        if (item.kind == ClipKind::file && !paths.empty()) {
            auto data = std::make_unique<QMimeData>();
            data->setUrls({QUrl::fromLocalFile(QString::fromStdString(paths.front()))});
            return data;
        }
    }
    auto data = std::make_unique<QMimeData>();
    data->setText(QString::fromStdString(item.text));
    return data;
}

void dragOut(const ClipItem& item, ClipFile file, QQuickItem& card) {
    if (card.window() == nullptr) return;
    // The toolkit owns and ends it.
    auto* const drag = new QDrag(card.window());
    drag->setMimeData(cardDragData(item, file).release());
    drag->setPixmap(pictureOf(card));
    drag->exec(Qt::CopyAction);
}

}  // namespace brimquill
