#pragma once

#include "Brimquill/Views/PanelView.h"
#include "Platform/EventMonitors.h"
#include "Platform/Pasteboard.h"
#include "Platform/RunLoop.h"
#include "Platform/Screens.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace brimquill {

/// A small form in front of the palette, built anew each time it shows. Keys come to it until it closes or until a
/// click in another application; a click in the form brings them back. Else they are the palette's or, without one,
/// those of the application below, which stays the active one throughout. Main thread.
class FormPanel final : public QObject {
    Q_OBJECT

public:
    /// All must outlive it.
    struct Environment {
        ViewHost& host;
        platform::Screens& screens;
        platform::Pasteboard& pasteboard;
        platform::RunLoop& runLoop;
        platform::EventMonitors& eventMonitors;
    };
    struct Form {
        /// A QML file of `Surfaces/Views` without its extension, and the title of its window.
        QString view, title;
        /// What the view gets as its property `model`.
        std::unique_ptr<QObject> model;
    };

    explicit FormPanel(Environment environment);
    ~FormPanel() override;

    /// Takes the place of a form that is up. False when the system cannot show it.
    bool show(Form form);
    /// Hides the form. It goes later by itself, so that it may ask for this itself.
    void close();
    /// Hides the form with all that was typed into it, and shows it again; without a form they do nothing.
    void setAside();
    void bringBack();
    /// Leaves the keyboard to the application below until the form is clicked.
    void resignKey();
    bool isVisible() const;
    /// Whether keys come to it now.
    bool isKey() const;

    /// The text on the pasteboard, read beforehand, so that no program is waited for.
    Q_INVOKABLE QString pasteboardText() const;

private:
    /// The view goes before the model that it shows.
    struct Shown {
        std::unique_ptr<QObject> model;
        std::unique_ptr<PanelView> view;
    };
    platform::Rect frame() const;

    Environment environment_;
    Shown shown_;
    std::vector<Shown> closed_;
    platform::Token clearWork_, outsideClickMonitor_, screenChanges_;
};

}  // namespace brimquill
