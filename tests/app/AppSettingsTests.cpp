#include "Brimquill/Settings/AppSettings.h"

#include "Platform/Headless/HeadlessDefaults.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

namespace brimquill {
namespace {

using platform::HeadlessDefaults;
using Value = platform::UserDefaults::Value;

TEST(AppSettings, GivesItsDefaultsFromAnEmptyStore) {
    HeadlessDefaults defaults;
    const AppSettings settings(defaults, nullptr, true);
    EXPECT_EQ(settings.maxHistoryItems(), 10000);
    EXPECT_THAT(settings.ignoredBundleIds(),
                testing::ElementsAre("com.1password.1password", "com.agilebits.onepassword7", "com.bitwarden.desktop",
                                     "com.apple.keychainaccess", "com.apple.Passwords"));
    EXPECT_TRUE(settings.secretAutoExpiry() && settings.organizeAfterCapture() && settings.showCaptureToasts());
    EXPECT_FALSE(settings.keywordExpansion() || settings.showFloatingPill() || settings.captureScreenshotFiles() ||
                 settings.iCloudSync() || settings.capturePaused() || settings.disableSystemThumbnail());
    EXPECT_TRUE(settings.launchAtLogin());
    EXPECT_EQ(settings.retentionDays(), 0);
    EXPECT_EQ(settings.appearanceMode(), "system");
    EXPECT_EQ(settings.accentColorName(), "system");
    EXPECT_TRUE(defaults.values().empty());
}

TEST(AppSettings, TakesValuesOfTheWrongTypeForAbsent) {
    HeadlessDefaults defaults;
    for (const char* key : {"maxHistoryItems", "ignoredBundleIds", "secretAutoExpiry", "showCaptureToasts"})
        defaults.set(key, std::string("3"));
    for (const char* key : {"appearanceMode", "accentColorName", "iCloudSync"})
        defaults.set(key, std::int64_t{1});
    const AppSettings settings(defaults, nullptr, false);
    EXPECT_EQ(settings.maxHistoryItems(), 10000);
    EXPECT_EQ(settings.ignoredBundleIds().size(), 5U);
    EXPECT_TRUE(settings.secretAutoExpiry() && settings.showCaptureToasts());
    EXPECT_EQ(settings.appearanceMode(), "system");
    EXPECT_EQ(settings.accentColorName(), "system");
    EXPECT_FALSE(settings.iCloudSync());
}

TEST(AppSettings, ReadsNumbersWithinTheirRange) {
    struct Case {
        std::int64_t stored;
        int expected;
    };
    for (const Case& c : {Case{0, 10000}, Case{-1, -1}, Case{250, 250}, Case{std::int64_t{1} << 40, 2147483647}}) {
        HeadlessDefaults defaults;
        defaults.set("maxHistoryItems", c.stored);
        EXPECT_EQ(AppSettings(defaults, nullptr, false).maxHistoryItems(), c.expected) << c.stored;
    }
}

TEST(AppSettings, WritesThroughBeforeItAnnouncesAndOnlyRealChanges) {
    HeadlessDefaults defaults;
    AppSettings settings(defaults, nullptr, false);
    std::optional<bool> seen;
    QObject::connect(&settings, &AppSettings::keywordExpansionChanged,
                     [&] { seen = defaults.boolean("keywordExpansion"); });
    QSignalSpy spy(&settings, &AppSettings::keywordExpansionChanged);
    settings.setKeywordExpansion(false);
    EXPECT_EQ(spy.count(), 0);
    settings.setKeywordExpansion(true);
    settings.setKeywordExpansion(true);
    EXPECT_EQ(spy.count(), 1);
    EXPECT_EQ(seen, true);
}

TEST(AppSettings, KeepsEverythingButThePauseOverARestart) {
    HeadlessDefaults defaults;
    {
        AppSettings settings(defaults, nullptr, false);
        for (const auto& [name, value] : {std::pair<const char*, QVariant>{"maxHistoryItems", 50},
                                          {"retentionDays", 7},
                                          {"secretAutoExpiry", false},
                                          {"organizeAfterCapture", false},
                                          {"capturePaused", true},
                                          {"keywordExpansion", true},
                                          {"showCaptureToasts", false},
                                          {"showFloatingPill", true},
                                          {"captureScreenshotFiles", true},
                                          {"iCloudSync", true},
                                          {"appearanceMode", QStringLiteral("dark")},
                                          {"accentColorName", QStringLiteral("teal")},
                                          {"ignoredBundleIds", QStringList{QStringLiteral("a.b")}}})
            EXPECT_TRUE(settings.setProperty(name, value)) << name;
    }
    const AppSettings settings(defaults, nullptr, false);
    EXPECT_EQ(settings.maxHistoryItems(), 50);
    EXPECT_EQ(settings.retentionDays(), 7);
    EXPECT_FALSE(settings.secretAutoExpiry() || settings.organizeAfterCapture() || settings.showCaptureToasts());
    EXPECT_TRUE(settings.keywordExpansion() && settings.showFloatingPill() && settings.captureScreenshotFiles() &&
                settings.iCloudSync());
    EXPECT_EQ(settings.nsAppearance(), AppSettings::Appearance::darkAqua);
    EXPECT_STREQ(settings.accentColor().name, "teal");
    EXPECT_THAT(settings.ignoredBundleIds(), testing::ElementsAre("a.b"));
    EXPECT_FALSE(settings.capturePaused());
}

TEST(AppSettings, UnknownNamesFollowTheDesktop) {
    HeadlessDefaults defaults;
    AppSettings settings(defaults, nullptr, false);
    settings.setAppearanceMode("sepia");
    settings.setAccentColorName("ultraviolet");
    EXPECT_EQ(settings.nsAppearance(), std::nullopt);
    EXPECT_STREQ(settings.accentColor().name, "system");
}

TEST(AppSettings, GivesTheThumbnailBackToTheDesktop) {
    HeadlessDefaults defaults, desktop;
    desktop.set("show-thumbnail", false);
    AppSettings settings(defaults, &desktop, false);
    EXPECT_TRUE(settings.disableSystemThumbnail());
    settings.setDisableSystemThumbnail(false);
    EXPECT_EQ(desktop.object("show-thumbnail"), std::nullopt);
    settings.setDisableSystemThumbnail(true);
    EXPECT_EQ(desktop.boolean("show-thumbnail"), false);
    EXPECT_TRUE(defaults.values().empty());
}

}  // namespace
}  // namespace brimquill
