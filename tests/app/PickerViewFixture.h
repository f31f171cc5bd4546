#pragma once

#include "tests/app/PaletteFixture.h"

#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include <string>
#include <vector>

namespace brimquill {

/// The palette as it is drawn and clicked.
class PickerViewFixture : public PaletteFixture {
protected:
    void showPalette(const std::vector<std::string>& texts) {
        for (const auto& text : texts) {
            world.advance(1);
            store.insert(text, ClipKind::text);
        }
        world.advance(1);
        palette.show();
        const auto frame = world.panels().keyPanel()->frame;
        window().resize(static_cast<int>(frame.width), static_cast<int>(frame.height));
        window().show();
        settle();
    }
    /// Lets the views lay themselves out.
    static void settle() { QTest::qWait(30); }

    QQuickView& window() { return *qobject_cast<QQuickView*>(world.panels().keyPanel()->window); }
    /// The view that shows this list; null if there is none.
    QQuickItem* listOf(const QObject* rows) {
        for (auto* item : window().rootObject()->findChildren<QQuickItem*>()) {
            if (item->property("model").value<QObject*>() == rows) return item;
        }
        return nullptr;
    }
    /// The first thing that has this text; null if there is none.
    static QQuickItem* withText(QQuickItem& item, const QString& text) {
        if (item.property("text").toString() == text) return &item;
        for (auto* child : item.childItems()) {
            if (auto* found = withText(*child, text)) return found;
        }
        return nullptr;
    }
    static QPoint middleOf(const QQuickItem& item) {
        return item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
    }
    QQuickItem& card(int index) {
        QQuickItem* card = nullptr;
        QMetaObject::invokeMethod(listOf(model.cards()), "itemAtIndex", Q_RETURN_ARG(QQuickItem*, card),
                                  Q_ARG(int, index));
        return *card;
    }
    QPoint middleOfCard(int index) { return middleOf(card(index)); }
    void click(QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&window(), button, {}, at);
        settle();
    }
};

}  // namespace brimquill
