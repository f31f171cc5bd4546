#pragma once

#include "Platform/UserDefaults.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace brimquill {

/// The user's preferences. Each is read once, held in memory, written through on every change and then announced; what
/// a change starts or stops is connected by the composition root. Setting the value that is there already does nothing.
/// A stored value of the wrong type counts as absent. Main thread.
class AppSettings final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int maxHistoryItems READ maxHistoryItems WRITE setMaxHistoryItems NOTIFY maxHistoryItemsChanged)
    Q_PROPERTY(QStringList ignoredBundleIds READ ignoredBundleIdList WRITE setIgnoredBundleIdList NOTIFY
                   ignoredBundleIdsChanged)
    Q_PROPERTY(bool secretAutoExpiry READ secretAutoExpiry WRITE setSecretAutoExpiry NOTIFY secretAutoExpiryChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool organizeAfterCapture READ organizeAfterCapture WRITE setOrganizeAfterCapture NOTIFY
                   organizeAfterCaptureChanged)
    Q_PROPERTY(bool capturePaused READ capturePaused WRITE setCapturePaused NOTIFY capturePausedChanged)
    Q_PROPERTY(int retentionDays READ retentionDays WRITE setRetentionDays NOTIFY retentionDaysChanged)
    Q_PROPERTY(QString appearanceMode READ appearanceModeText WRITE setAppearanceModeText NOTIFY appearanceModeChanged)
    Q_PROPERTY(
        QString accentColorName READ accentColorNameText WRITE setAccentColorNameText NOTIFY accentColorNameChanged)
    Q_PROPERTY(QVariantList accents READ accentList CONSTANT)
    Q_PROPERTY(bool keywordExpansion READ keywordExpansion WRITE setKeywordExpansion NOTIFY keywordExpansionChanged)
    Q_PROPERTY(bool showCaptureToasts READ showCaptureToasts WRITE setShowCaptureToasts NOTIFY showCaptureToastsChanged)
    Q_PROPERTY(bool showFloatingPill READ showFloatingPill WRITE setShowFloatingPill NOTIFY showFloatingPillChanged)
    Q_PROPERTY(bool captureScreenshotFiles READ captureScreenshotFiles WRITE setCaptureScreenshotFiles NOTIFY
                   captureScreenshotFilesChanged)
    Q_PROPERTY(bool disableSystemThumbnail READ disableSystemThumbnail WRITE setDisableSystemThumbnail NOTIFY
                   disableSystemThumbnailChanged)
    Q_PROPERTY(bool iCloudSync READ iCloudSync WRITE setICloudSync NOTIFY iCloudSyncChanged)

public:
    static constexpr int defaultMaxHistoryItems = 10000;

    /// A colour to choose as the accent: `fill` carries white text, `inkOnDark` is for text and symbols on dark.
    struct Accent {
        const char* name;
        const char* fill;
        const char* inkOnDark;
    };
    /// In the order of the form. The first stands for the desktop's own accent, which is blue here.
    static constexpr std::array<Accent, 9> accents{{{"system", "#0A6CFF", "#4791FF"},
                                                    {"blue", "#0A6CFF", "#4791FF"},
                                                    {"purple", "#9C4DDB", "#B477E4"},
                                                    {"pink", "#E51D59", "#ED618B"},
                                                    {"red", "#DF3127", "#E86C65"},
                                                    {"orange", "#BA5C0A", "#E6720C"},
                                                    {"green", "#26863F", "#2FA84F"},
                                                    {"teal", "#118196", "#159FB8"},
                                                    {"indigo", "#5A58DC", "#8A88E6"}}};

    enum class Appearance { aqua, darkAqua };

    /// `screenCapture` holds the desktop's preferences for screenshots and may be null; `launchesAtLogin` tells whether
    /// the program is started with the session now. Both stores must outlive this.
    AppSettings(platform::UserDefaults& defaults, platform::UserDefaults* screenCapture, bool launchesAtLogin);

    /// 10,000 by default and in place of 0; below 0 there is no limit.
    int maxHistoryItems() const { return maxHistoryItems_; }
    const std::vector<std::string>& ignoredBundleIds() const { return ignoredBundleIds_; }
    bool secretAutoExpiry() const { return secretAutoExpiry_; }
    bool launchAtLogin() const { return launchAtLogin_; }
    bool organizeAfterCapture() const { return organizeAfterCapture_; }
    /// Never stored: a restart always resumes capture.
    bool capturePaused() const { return capturePaused_; }
    /// 0 keeps clips for ever.
    int retentionDays() const { return retentionDays_; }
    const std::string& appearanceMode() const { return appearanceMode_; }
    const std::string& accentColorName() const { return accentColorName_; }
    bool keywordExpansion() const { return keywordExpansion_; }
    bool showCaptureToasts() const { return showCaptureToasts_; }
    bool showFloatingPill() const { return showFloatingPill_; }
    bool captureScreenshotFiles() const { return captureScreenshotFiles_; }
    bool disableSystemThumbnail() const { return disableSystemThumbnail_; }
    bool iCloudSync() const { return iCloudSync_; }

    /// What the windows of the program should look like; nothing when they follow the desktop.
    std::optional<Appearance> nsAppearance() const;
    /// The accent of that name; the desktop's own when the name is not on the list.
    const Accent& accentColor() const;

    void setMaxHistoryItems(int value);
    void setIgnoredBundleIds(std::vector<std::string> value);
    void setSecretAutoExpiry(bool value);
    void setLaunchAtLogin(bool value);
    void setOrganizeAfterCapture(bool value);
    void setCapturePaused(bool value);
    void setRetentionDays(int value);
    void setAppearanceMode(std::string value);
    void setAccentColorName(std::string value);
    void setKeywordExpansion(bool value);
    void setShowCaptureToasts(bool value);
    void setShowFloatingPill(bool value);
    void setCaptureScreenshotFiles(bool value);
    void setDisableSystemThumbnail(bool value);
    void setICloudSync(bool value);

    /// The same for views. `accentList` has an object {name, fill, inkOnDark} for each accent.
    QStringList ignoredBundleIdList() const;
    void setIgnoredBundleIdList(const QStringList& value);
    QString appearanceModeText() const { return QString::fromStdString(appearanceMode_); }
    void setAppearanceModeText(const QString& value) { setAppearanceMode(value.toStdString()); }
    QString accentColorNameText() const { return QString::fromStdString(accentColorName_); }
    void setAccentColorNameText(const QString& value) { setAccentColorName(value.toStdString()); }
    QVariantList accentList() const;

Q_SIGNALS:
    void maxHistoryItemsChanged();
    void ignoredBundleIdsChanged();
    void secretAutoExpiryChanged();
    void launchAtLoginChanged();
    void organizeAfterCaptureChanged();
    void capturePausedChanged();
    void retentionDaysChanged();
    void appearanceModeChanged();
    void accentColorNameChanged();
    void keywordExpansionChanged();
    void showCaptureToastsChanged();
    void showFloatingPillChanged();
    void captureScreenshotFilesChanged();
    void disableSystemThumbnailChanged();
    void iCloudSyncChanged();

private:
    bool stored(const char* key, bool fallback) const;
    int stored(const char* key, int fallback) const;
    std::string stored(const char* key, const char* fallback) const;
    template <typename T>
    bool store(const char* key, T& field, T value);

    platform::UserDefaults& defaults_;
    platform::UserDefaults* screenCapture_;
    int maxHistoryItems_, retentionDays_;
    std::vector<std::string> ignoredBundleIds_;
    std::string appearanceMode_, accentColorName_;
    bool secretAutoExpiry_, launchAtLogin_, organizeAfterCapture_, keywordExpansion_, showCaptureToasts_;
    bool showFloatingPill_, captureScreenshotFiles_, disableSystemThumbnail_, iCloudSync_;
    bool capturePaused_ = false;
};

}  // namespace brimquill
