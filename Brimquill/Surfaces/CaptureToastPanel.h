#pragma once

#include "Brimquill/Settings/AppSettings.h"
#include "Brimquill/Surfaces/CaptureToast.h"
#include "Brimquill/Surfaces/ToastModel.h"
#include "Brimquill/Views/PanelView.h"
#include "Platform/RunLoop.h"
#include "Platform/Screens.h"

#include <QObject>

#include <functional>
#include <memory>

namespace brimquill {

/// The capture toast as a panel at the bottom right of the screen, which takes clicks but never keys. Main thread.
class CaptureToastPanel final : public QObject, public CaptureToast {
    Q_OBJECT

public:
    static constexpr double width = 340, height = 74;
    /// How long a toast stays after its last capture, or after the pointer left it, in seconds.
    static constexpr double stay = 2.0, stayWithImage = 3.2;

    /// What it works with; everything must outlive it.
    struct Environment {
        ViewHost& host;
        AppSettings& settings;
        platform::Screens& screens;
        platform::RunLoop& runLoop;
        /// Tells whether the palette shows, above which the toast then stands.
        std::function<bool()> isPaletteVisible;
    };
    explicit CaptureToastPanel(Environment environment);
    ~CaptureToastPanel() override;

    void show(const Content& content, Occasion occasion = Occasion::capture) override;
    ToastModel& model() { return model_; }

Q_SIGNALS:
    /// The toast was clicked.
    void opened();

private:
    void prepare();
    void present(const Content& content, Occasion occasion);
    void position();
    void scheduleDismiss();
    void dismiss();

    Environment environment_;
    ToastModel model_;
    std::unique_ptr<PanelView> view_;
    platform::Token dismissWork_;
};

}  // namespace brimquill
