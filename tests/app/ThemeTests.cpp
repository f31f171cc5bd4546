#include "Brimquill/Palette/CardStyle.h"
#include "Brimquill/Views/ViewHost.h"
#include "tests/app/AppFixture.h"

#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>

#include <cmath>

namespace brimquill {
namespace {

double luminance(const QColor& color) {
    const auto channel = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) + 0.0722 * channel(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

QColor over(const QColor& above, const QColor& below) {
    const auto mix = [&](double a, double b) { return a * above.alphaF() + b * (1 - above.alphaF()); };
    return QColor::fromRgbF(static_cast<float>(mix(above.redF(), below.redF())),
                            static_cast<float>(mix(above.greenF(), below.greenF())),
                            static_cast<float>(mix(above.blueF(), below.blueF())));
}

/// What words must reach, and what symbols and edges must.
constexpr double words = 4.5, shapes = 3;

class ThemeTest : public AppFixture {
protected:
    ThemeTest() {
        world.panels().setTranslucencyAvailable(false);
        views.appearance().refreshTranslucency();
        component.setData("import QtQuick\nimport \"qrc:/brimquill/Views\"\nQtObject { property var theme: Theme }",
                          {});
        holder.reset(component.create());
    }
    QColor color(const char* name) const {
        return holder->property("theme").value<QObject*>()->property(name).value<QColor>();
    }

    ViewHost views{settings, world.appearance(), world.panels()};
    QQmlComponent component{&views.engine()};
    std::unique_ptr<QObject> holder;
};

TEST_F(ThemeTest, EverythingCanBeReadOnWhatItStandsOn) {
    ASSERT_TRUE(holder) << component.errorString().toStdString();
    for (const char* mode : {"light", "dark"}) {
        settings.setAppearanceMode(mode);
        const auto surface = color("surface"), card = color("cardBody");
        const auto field = over(color("field"), surface), hovered = over(color("fieldHovered"), surface);
        const struct {
            const char* ink;
            QColor ground;
            double least;
        } pairs[] = {{"primaryText", surface, words}, {"primaryText", card, words},   {"primaryText", field, words},
                     {"primaryText", hovered, words}, {"secondaryText", card, words}, {"secondaryText", surface, words},
                     {"secondaryText", field, words}, {"warning", surface, words},    {"warning", card, shapes},
                     {"destructive", card, words},    {"success", card, shapes},      {"accentInk", surface, shapes},
                     {"accentInk", card, shapes}};
        for (const auto& [ink, ground, least] : pairs)
            EXPECT_GE(contrast(color(ink), ground), least)
                << mode << ": " << ink << " on " << ground.name().toStdString();
        EXPECT_GE(contrast(Qt::white, color("accentFill")), words) << mode;
        for (const char* name : {"orange", "red", "blue", "green", "purple", "pink", "teal", "indigo"}) {
            const auto named = *CardStyle::named(name);
            const QColor fill(QString::fromStdString(named.fill)), onFill(QString::fromStdString(named.onFill));
            const QColor ink(QString::fromStdString(color("surface").lightnessF() < 0.5F ? named.ink : named.fill));
            EXPECT_GE(contrast(fill, onFill), words) << name;
            EXPECT_GE(contrast(ink, card), words) << mode << ": " << name;
            EXPECT_GE(contrast(ink, field), shapes) << mode << ": the mark of a chip, " << name;
        }
    }
}

TEST_F(ThemeTest, AUsersOwnColourAlwaysCarriesReadableWords) {
    for (int step = 0; step < 216; ++step) {
        const QColor fill(step / 36 * 51, step / 6 % 6 * 51, step % 6 * 51);
        const auto custom = CardStyle::custom(fill.name().toUpper().toStdString());
        EXPECT_GE(contrast(fill, QColor(QString::fromStdString(custom.onFill))), words) << custom.fill;
    }
}

}  // namespace
}  // namespace brimquill
