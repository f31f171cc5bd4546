#include "Brimquill/Settings/AppSettings.h"

#include <QVariantMap>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>

namespace brimquill {
namespace {

constexpr const char* maxHistoryItemsKey = "maxHistoryItems";
constexpr const char* ignoredBundleIdsKey = "ignoredBundleIds";
constexpr const char* secretAutoExpiryKey = "secretAutoExpiry";
constexpr const char* organizeAfterCaptureKey = "organizeAfterCapture";
constexpr const char* retentionDaysKey = "retentionDays";
constexpr const char* appearanceModeKey = "appearanceMode";
constexpr const char* accentColorNameKey = "accentColorName";
constexpr const char* keywordExpansionKey = "keywordExpansion";
constexpr const char* showCaptureToastsKey = "showCaptureToasts";
constexpr const char* showFloatingPillKey = "showFloatingPill";
constexpr const char* captureScreenshotFilesKey = "captureScreenshotFiles";
constexpr const char* iCloudSyncKey = "iCloudSync";
/// In the desktop's suite, not in ours.
constexpr const char* showThumbnailKey = "show-thumbnail";

std::vector<std::string> passwordManagers() {
    return {"com.1password.1password", "com.agilebits.onepassword7", "com.bitwarden.desktop",
            "com.apple.keychainaccess", "com.apple.Passwords"};
}

}  // namespace

AppSettings::AppSettings(platform::UserDefaults& defaults, platform::UserDefaults* screenCapture, bool launchesAtLogin)
    : defaults_(defaults),
      screenCapture_(screenCapture),
      maxHistoryItems_(stored(maxHistoryItemsKey, 0)),
      retentionDays_(stored(retentionDaysKey, 0)),
      ignoredBundleIds_(defaults.stringArray(ignoredBundleIdsKey).value_or(passwordManagers())),
      appearanceMode_(stored(appearanceModeKey, "system")),
      accentColorName_(stored(accentColorNameKey, "system")),
      secretAutoExpiry_(stored(secretAutoExpiryKey, true)),
      launchAtLogin_(launchesAtLogin),
      organizeAfterCapture_(stored(organizeAfterCaptureKey, true)),
      keywordExpansion_(stored(keywordExpansionKey, false)),
      showCaptureToasts_(stored(showCaptureToastsKey, true)),
      showFloatingPill_(stored(showFloatingPillKey, false)),
      captureScreenshotFiles_(stored(captureScreenshotFilesKey, false)),
      disableSystemThumbnail_(screenCapture && screenCapture->boolean(showThumbnailKey) == false),
      iCloudSync_(stored(iCloudSyncKey, false)) {
    if (maxHistoryItems_ == 0) maxHistoryItems_ = defaultMaxHistoryItems;
}

bool AppSettings::stored(const char* key, bool fallback) const {
    return defaults_.boolean(key).value_or(fallback);
}

int AppSettings::stored(const char* key, int fallback) const {
    const std::int64_t value = defaults_.integer(key).value_or(fallback);
    return static_cast<int>(
        std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

std::string AppSettings::stored(const char* key, const char* fallback) const {
    return defaults_.string(key).value_or(fallback);
}

/// Whether it is a change; one with a key is written before anybody hears of it.
template <typename T>
bool AppSettings::store(const char* key, T& field, T value) {
    if (field == value) return false;
    field = std::move(value);
    if constexpr (std::is_same_v<T, int>) {
        defaults_.set(key, std::int64_t{field});
    } else {
        defaults_.set(key, field);
    }
    return true;
}

std::optional<AppSettings::Appearance> AppSettings::nsAppearance() const {
    if (appearanceMode_ == "light") return Appearance::aqua;
    if (appearanceMode_ == "dark") return Appearance::darkAqua;
    return std::nullopt;
}

const AppSettings::Accent& AppSettings::accentColor() const {
    const auto found = std::find_if(accents.begin(), accents.end(), [this](const Accent& accent) {
        return std::string_view(accent.name) == accentColorName_;
    });
    return found == accents.end() ? accents.front() : *found;
}

void AppSettings::setMaxHistoryItems(int value) {
    if (store(maxHistoryItemsKey, maxHistoryItems_, value)) Q_EMIT maxHistoryItemsChanged();
}

void AppSettings::setIgnoredBundleIds(std::vector<std::string> value) {
    if (store(ignoredBundleIdsKey, ignoredBundleIds_, std::move(value))) Q_EMIT ignoredBundleIdsChanged();
}

void AppSettings::setSecretAutoExpiry(bool value) {
    if (store(secretAutoExpiryKey, secretAutoExpiry_, value)) Q_EMIT secretAutoExpiryChanged();
}

void AppSettings::setLaunchAtLogin(bool value) {
    if (std::exchange(launchAtLogin_, value) != value) Q_EMIT launchAtLoginChanged();
}

void AppSettings::setOrganizeAfterCapture(bool value) {
    if (store(organizeAfterCaptureKey, organizeAfterCapture_, value)) Q_EMIT organizeAfterCaptureChanged();
}

void AppSettings::setCapturePaused(bool value) {
    if (std::exchange(capturePaused_, value) != value) Q_EMIT capturePausedChanged();
}

void AppSettings::setRetentionDays(int value) {
    if (store(retentionDaysKey, retentionDays_, value)) Q_EMIT retentionDaysChanged();
}

void AppSettings::setAppearanceMode(std::string value) {
    if (store(appearanceModeKey, appearanceMode_, std::move(value))) Q_EMIT appearanceModeChanged();
}

void AppSettings::setAccentColorName(std::string value) {
    if (store(accentColorNameKey, accentColorName_, std::move(value))) Q_EMIT accentColorNameChanged();
}

void AppSettings::setKeywordExpansion(bool value) {
    if (store(keywordExpansionKey, keywordExpansion_, value)) Q_EMIT keywordExpansionChanged();
}

void AppSettings::setShowCaptureToasts(bool value) {
    if (store(showCaptureToastsKey, showCaptureToasts_, value)) Q_EMIT showCaptureToastsChanged();
}

void AppSettings::setShowFloatingPill(bool value) {
    if (store(showFloatingPillKey, showFloatingPill_, value)) Q_EMIT showFloatingPillChanged();
}

void AppSettings::setCaptureScreenshotFiles(bool value) {
    if (store(captureScreenshotFilesKey, captureScreenshotFiles_, value)) Q_EMIT captureScreenshotFilesChanged();
}

void AppSettings::setDisableSystemThumbnail(bool value) {
    if (std::exchange(disableSystemThumbnail_, value) == value) return;
    if (screenCapture_ && value) screenCapture_->set(showThumbnailKey, false);
    // Without the key the choice is the desktop's again.
    if (screenCapture_ && !value) screenCapture_->removeObject(showThumbnailKey);
    Q_EMIT disableSystemThumbnailChanged();
}

void AppSettings::setICloudSync(bool value) {
    if (store(iCloudSyncKey, iCloudSync_, value)) Q_EMIT iCloudSyncChanged();
}

QStringList AppSettings::ignoredBundleIdList() const {
    QStringList list;
    for (const std::string& bundleId : ignoredBundleIds_)
        list.append(QString::fromStdString(bundleId));
    return list;
}

void AppSettings::setIgnoredBundleIdList(const QStringList& value) {
    std::vector<std::string> bundleIds;
    for (const QString& bundleId : value)
        bundleIds.push_back(bundleId.toStdString());
    setIgnoredBundleIds(std::move(bundleIds));
}

QVariantList AppSettings::accentList() const {
    QVariantList list;
    for (const Accent& accent : accents) {
        list.append(QVariantMap{{QStringLiteral("name"), QString::fromUtf8(accent.name)},
                                {QStringLiteral("fill"), QString::fromUtf8(accent.fill)},
                                {QStringLiteral("inkOnDark"), QString::fromUtf8(accent.inkOnDark)}});
    }
    return list;
}

}  // namespace brimquill
