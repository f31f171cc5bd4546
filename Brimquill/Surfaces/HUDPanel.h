#pragma once

#include "Brimquill/Surfaces/HUD.h"
#include "Brimquill/Views/PanelView.h"
#include "Platform/RunLoop.h"
#include "Platform/Screens.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace brimquill {

/// What the HUD says now.
class HUDModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString text READ text NOTIFY contentChanged)
    Q_PROPERTY(QString symbol READ symbol NOTIFY contentChanged)
    Q_PROPERTY(bool shown READ shown NOTIFY shownChanged)

public:
    QString text() const { return text_; }
    QString symbol() const { return symbol_; }
    /// Whether the view should be there; it fades by itself when this changes.
    bool shown() const { return shown_; }
    void setContent(const std::string& text, const std::string& symbol);
    void setShown(bool shown);

Q_SIGNALS:
    void contentChanged();
    void shownChanged();

private:
    QString text_, symbol_;
    bool shown_ = false;
};

/// The HUD as a panel low on the screen that takes neither keys nor clicks. Main thread.
class HUDPanel final : public HUD {
public:
    /// Tells whether the palette shows, whose place the HUD then leaves free.
    using IsPaletteVisible = std::function<bool()>;

    /// All must outlive it.
    HUDPanel(ViewHost& host, platform::Screens& screens, platform::RunLoop& runLoop, IsPaletteVisible isPaletteVisible);
    ~HUDPanel() override;

    void show(const std::string& text, const std::string& symbol) override;
    HUDModel& model() { return model_; }

private:
    void prepare();
    void present(const std::string& text, const std::string& symbol);
    void fadeOut();
    platform::Rect frame(const platform::Screen& screen) const;

    ViewHost& host_;
    platform::Screens& screens_;
    platform::RunLoop& runLoop_;
    IsPaletteVisible isPaletteVisible_;
    HUDModel model_;
    std::unique_ptr<PanelView> view_;
    platform::Token presentWork_, dismissWork_;
};

}  // namespace brimquill
