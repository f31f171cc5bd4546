import QtQuick
import "../../Views"

// A clip's tags and its pinboard.
PanelSurface {
    id: form

    required property QtObject model
    required property QtObject panel

    bodyWidth: 440
    bodyHeight: column.implicitHeight + 2 * column.y
    Accessible.role: Accessible.Dialog
    Accessible.name: form.model.title

    Column {
        id: column
        x: Theme.panelPadding + Theme.smallGap
        y: Theme.panelPadding + Theme.smallGap
        width: parent.width - 2 * x
        spacing: Theme.gap

        FormHeader {
            width: parent.width
            height: 24
            symbol: "tag.fill"
            title: form.model.title
            detail: form.model.preview
        }
        FormField {
            id: tags
            width: parent.width
            model: form.model
            panel: form.panel
            symbol: "tag"
            accessibleName: "Tags"
            placeholder: "Tags (comma separated, e.g. receipts, work)"
            text: form.model.tags
            onEdited: form.model.tags = text
            input.focus: !form.model.startsWithPinboard
            input.KeyNavigation.tab: pinboard.input
            input.KeyNavigation.backtab: pinboard.input
        }
        FormField {
            id: pinboard
            width: parent.width
            model: form.model
            panel: form.panel
            symbol: "folder"
            accessibleName: "Pinboard"
            placeholder: "Pinboard (e.g. Work/Clients — clear to un-file)"
            text: form.model.folderName
            onEdited: form.model.folderName = text
            input.focus: form.model.startsWithPinboard
            input.KeyNavigation.tab: tags.input
            input.KeyNavigation.backtab: tags.input
        }
        FormFooter {
            width: parent.width
            hint: "↩ save  ·  ⇥ next field  ·  esc close"
            dismissLabel: form.model.dismissLabel
            onDismissed: form.model.cancel()
            onSaved: form.model.save()
        }
    }
}
