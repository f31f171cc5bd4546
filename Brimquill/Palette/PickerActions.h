#pragma once

#include "Brimquill/Palette/PickerModel.h"
#include "Brimquill/Paste/PasteService.h"
#include "Brimquill/Settings/AppSettings.h"
#include "Brimquill/Surfaces/HUD.h"

#include <functional>
#include <vector>

namespace brimquill {

/// What the palette does with its cards. Keeps what was deleted, so that it can be undone, for the whole run. Main
/// thread.
class PickerActions final {
public:
    struct Environment {
        PickerModel& model;
        ClipStore& store;
        PasteService& paste;
        AppSettings& settings;
        platform::Workspace& workspace;
        HUD& hud;
        /// Turns a snippet's stored text into what is pasted.
        std::function<std::string(const std::string&)> expand;
    };

    explicit PickerActions(Environment environment) : environment_(std::move(environment)) {}

    /// Puts the clips on the pasteboard: one in the form that suits its kind, several as one text, a line for each.
    enum class Delivery { paste, copyOnly };
    void deliver(const std::vector<ClipItem>& items, Delivery delivery);

    /// Puts a clip on the pasteboard without a word: the card that was clicked says so itself.
    void copyByClick(const ClipItem& item) { environment_.paste.paste(item, false); }

    /// Deletes the chosen cards; one step of undo.
    void deleteSelected();
    /// Deletes one clip, whatever is chosen; one step of undo.
    void deleteOne(std::int64_t id);
    void undoDelete();
    void setPinned(std::int64_t id, bool pinned);
    /// Opens the focused card's link, file or picture. False when there is nothing to open, which the user is told.
    bool openSelected();
    void togglePause();

private:
    std::string joinedText(const std::vector<ClipItem>& items) const;

    Environment environment_;
    std::vector<std::vector<std::int64_t>> undoStack_;
};

}  // namespace brimquill
