#include "Brimquill/Palette/PickerPanelController.h"
#include "Brimquill/Surfaces/EditView.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

#include <QQuickItem>
#include <QQuickView>
#include <QTextCursor>
#include <QTextDocument>

namespace brimquill {
namespace {

using platform::Delivery;
using testing::ElementsAre;
using testing::IsEmpty;
using Field = OrganizeView::Field;
namespace key = platform::key;

std::string repeated(const std::string& text, int times) {
    std::string all;
    while (times-- > 0)
        all += text;
    return all;
}

class FilingTest : public AppFixture {
protected:
    std::int64_t insert(const std::string& text) {
        world.advance(1);
        return store.insert(text, ClipKind::text)->id;
    }
    std::string pathOf(std::int64_t id) {
        const auto folderId = store.clip(id)->folderId;
        for (const auto& folder : store.folders()) {
            if (folder.id == folderId) return store.path(folder);
        }
        return folderId ? "a pinboard that is not there" : "";
    }

    ViewHost views{settings, world.appearance(), world.panels()};
    FormPanel::Environment forms{views, world.screens(), world.pasteboard(), world.runLoop(), world.eventMonitors()};
    TagPanelController tagPanel{store, forms};
    EditPanelController editPanel{store, forms};
    int done = 0;
};

TEST_F(FilingTest, WhatStandsBetweenTheCommasBecomesTags) {
    const struct {
        const char* typed;
        std::vector<std::string> tags;
    } cases[] = {
        {"a, ,b", {"a", "b"}},        {" Receipts ,WORK", {"receipts", "work"}}, {",,", {}},
        {"two words", {"two words"}}, {"سفر,🧾 ", {"سفر", "🧾"}},         {"", {}},
    };
    const auto id = insert("clip");
    for (const auto& [typed, tags] : cases) {
        OrganizeView form(*store.clip(id), Field::tags, {}, store);
        form.tags = QString::fromUtf8(typed);
        form.save();
        EXPECT_EQ(store.clip(id)->tags, tags) << typed;
    }
}

TEST_F(FilingTest, ThePathFilesAndItsAbsenceUnfiles) {
    const auto id = insert("clip");
    store.setTags(id, {"kept", "both"});
    const struct {
        const char* typed;
        const char* path;
        std::size_t folders;
    } steps[] = {
        {"Work/Clients/North", "Work/Clients/North", 3},
        {"  Work/Clients ", "Work/Clients", 3},
        {"", "", 3},
        {"Work/Garden", "Work/Garden", 4},
        {" / / ", "", 4},
    };
    for (const auto& [typed, path, folders] : steps) {
        OrganizeView form(*store.clip(id), Field::pinboard, {}, store);
        form.folderName = QString::fromUtf8(typed);
        form.save();
        EXPECT_EQ(pathOf(id), path) << typed;
        EXPECT_EQ(store.folders().size(), folders) << typed;
        EXPECT_THAT(store.clip(id)->tags, ElementsAre("kept", "both")) << typed;
    }
}

TEST_F(FilingTest, StartsWithWhatTheClipHasAndSavesItBackUnchanged) {
    const auto id = insert("first line\nsecond");
    store.setTags(id, {"one", "two words"});
    store.setFolder(id, store.folder("Work/Clients").id);
    OrganizeView form(*store.clip(id), Field::pinboard, {}, store);
    EXPECT_EQ(form.tags, QStringLiteral("one, two words"));
    EXPECT_EQ(form.folderName, QStringLiteral("Work/Clients"));
    EXPECT_EQ(form.preview(), QStringLiteral("first line second"));
    form.save();
    EXPECT_THAT(store.clip(id)->tags, ElementsAre("one", "two words"));
    EXPECT_EQ(pathOf(id), "Work/Clients");
}

TEST_F(FilingTest, TheEditedTextIsStoredAsItStands) {
    const struct {
        const char* before;
        const char* inserted;
        const char* after;
        const char* count;
    } cases[] = {
        {"plain", "", "plain", "5 characters"},
        {"as it\r\nwas\xC2\xA0!", "", "as it\r\nwas\xC2\xA0!", "11 characters"},
        {"hard\xC2\xA0space", "!", "!hard\xC2\xA0space", "11 characters"},
        {"two\nlines", "a\n", "a\ntwo\nlines", "11 characters"},
        {"from\r\nelsewhere\r\n", "a\n", "a\r\nfrom\r\nelsewhere\r\n", "17 characters"},
        {"mixed\r\nup\n", "a\n", "a\nmixed\nup\n", "11 characters"},
        {"", "👩‍👩‍👧‍👦🇩🇪", "👩‍👩‍👧‍👦🇩🇪", "2 characters"},
        {"e\xCC\x81", "\xE2\x80\xA8", "\ne\xCC\x81", "2 characters"},
    };
    for (const auto& [before, inserted, after, count] : cases) {
        const auto id = insert("for the next case");
        store.updateText(id, before);
        EditView form(*store.clip(id), store, world.runLoop());
        QTextDocument document(form.text());
        form.edit(document);
        if (*inserted != '\0') QTextCursor(&document).insertText(QString::fromUtf8(inserted));
        EXPECT_EQ(form.status().toStdString(), count);
        form.save();
        EXPECT_EQ(store.clip(id)->text, after);
        store.deleteClip(id);
    }
}

TEST_F(FilingTest, ALongTextIsCountedWhenTheKeysPause) {
    const auto id = insert(repeated(std::string(98, 'x') + '\n', 5'000));
    EditView form(*store.clip(id), store, world.runLoop());
    QTextDocument document(form.text());
    form.edit(document);
    QTextCursor(&document).insertText(QStringLiteral("ab"));
    EXPECT_EQ(form.status(), QStringLiteral("495000 characters"));
    world.advance(1);
    EXPECT_EQ(form.status(), QStringLiteral("495002 characters"));
    QTextCursor(&document).insertText(QStringLiteral("c"));
    form.save();
    EXPECT_EQ(store.clip(id)->text.size(), 495'003U) << "what was not counted yet is saved all the same";
}

TEST_F(FilingTest, WhatWouldMakeTheEditorSlowIsNotTakenIn) {
    const std::string word(3'000, 'x'), words = repeated("four ", 20'000), paragraph = repeated("four ", 20'001);
    const std::string lines = repeated("four\n", 100'000);
    const struct {
        const char* name;
        std::string before, inserted;
        bool isEditable, admits, hasWords;
    } cases[] = {
        {"short", "text", "more", true, true, true},
        {"a long word, made so that it fits", word, "more", true, true, false},
        {"a long word comes", "text", word, true, true, false},
        {"the longest paragraph", words, words, true, true, true},
        {"a longer one", paragraph, "", false, false, true},
        {"a longer one comes", "text", paragraph, true, false, true},
        {"line separators end none", repeated("four\u2028", 20'001), "", false, false, true},
        {"many lines", lines, "", true, true, true},
        {"too many", lines + "!", "", false, false, true},
        {"too many come", lines, "and this", true, false, true},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const auto id = insert("for the next case");
        store.updateText(id, test.before);
        EditView form(*store.clip(id), store, world.runLoop());
        EXPECT_EQ(form.isEditable(), test.isEditable);
        EXPECT_EQ(form.text().isEmpty(), !test.isEditable);
        QTextDocument document(form.text());
        form.edit(document);
        EXPECT_EQ(form.admits(QString::fromStdString(test.inserted)), test.admits);
        EXPECT_EQ(form.hasWords(), test.hasWords);
        EXPECT_EQ(form.status().startsWith(QLatin1String("Too long")), !test.admits);
        if (!test.isEditable) document.setPlainText(QStringLiteral("not the text"));
        form.save();
        EXPECT_EQ(store.clip(id)->text, test.before);
        store.deleteClip(id);
    }
}

TEST_F(FilingTest, ThePanelsCloseAndTellOnceSavedOrLeft) {
    const auto id = insert("clip");
    const auto form = [&] { return world.panels().keyPanel(); };
    const auto model = [&] {
        return qobject_cast<QQuickView*>(form()->window)->rootObject()->property("model").value<QObject*>();
    };
    for (const bool edits : {false, true}) {
        for (const char* ending : {"cancel", "save"}) {
            done = 0;
            const auto tell = [&] { ++done; };
            if (edits) {
                editPanel.show(*store.clip(id), tell);
            } else {
                tagPanel.show(*store.clip(id), Field::tags, tell);
            }
            ASSERT_TRUE(form());
            model()->setProperty("tags", QString::fromUtf8(ending));
            QMetaObject::invokeMethod(model(), ending);
            EXPECT_EQ(done, 1);
            EXPECT_FALSE(form());
            world.run();
        }
        EXPECT_THAT(store.clip(id)->tags, ElementsAre("save")) << "and not what was left";
    }
}

TEST_F(FilingTest, WhereNoFormCanBeShownNothingIsLeftBehind) {
    world.panels().setShows(false);
    tagPanel.show(*store.clip(insert("clip")), Field::tags, [this] { ++done; });
    world.run();
    EXPECT_FALSE(tagPanel.isVisible());
    EXPECT_EQ(done, 0);
}

class FilingFromThePaletteTest : public FilingTest {
protected:
    FilingFromThePaletteTest() {
        for (const char* text : {"three", "two", "one"})
            insert(text);
        palette.show();
    }

    QObject* form() {
        return qobject_cast<QQuickView*>(world.panels().keyPanel()->window)
            ->rootObject()
            ->property("model")
            .value<QObject*>();
    }
    bool isPaletteKey() { return world.panels().keyPanel() == world.panels().records().front(); }
    void pressCommand(int code, const char* letter) { world.press(code, {.command = true}, letter); }

    PickerModel model{{store, center, world.runLoop(), world.defaults(), [] { return std::vector<std::int64_t>{}; }}};
    PickerActions actions{
        {model, store, pasteService, settings, world.workspace(), hud, [](const std::string& text) { return text; }}};
    StackManager stack{store, pasteService, hud, world.defaults()};
    PickerPanelController palette{{model, actions, world, settings, views, center, tagPanel, editPanel, stack}};
};

TEST_F(FilingFromThePaletteTest, TheKeysAreTheFormsUntilItIsDone) {
    world.press(key::right);
    pressCommand(key::p, "p");
    ASSERT_TRUE(tagPanel.panel().isKey());
    EXPECT_TRUE(form()->property("startsWithPinboard").toBool());
    for (const int code : {key::right, key::returnKey, key::escape, key::deleteKey, key::tab})
        EXPECT_EQ(world.press(code), Delivery::passed) << code;
    EXPECT_EQ(world.press(key::t, {.command = true}, "t"), Delivery::passed);
    EXPECT_EQ(model.selectedIndex(), 1);
    form()->setProperty("folderName", QStringLiteral("Work"));
    QMetaObject::invokeMethod(form(), "save");
    EXPECT_TRUE(isPaletteKey());
    EXPECT_EQ(pathOf(store.fetchHistory(3)[1].id), "Work");
    EXPECT_TRUE(model.items()[1].folderId) << "the list was read anew";
    EXPECT_EQ(world.press(key::right), Delivery::swallowed);
}

TEST_F(FilingFromThePaletteTest, OfSeveralCardsTheFocusedOneIsFiled) {
    model.toggleSelection(0);
    model.toggleSelection(2);
    pressCommand(key::t, "t");
    EXPECT_FALSE(form()->property("startsWithPinboard").toBool());
    form()->setProperty("tags", QStringLiteral("mine"));
    QMetaObject::invokeMethod(form(), "save");
    const auto clips = store.fetchHistory(3);
    EXPECT_THAT(clips[0].tags, IsEmpty());
    EXPECT_THAT(clips[2].tags, ElementsAre("mine"));
}

TEST_F(FilingFromThePaletteTest, AnEmojiHasNoForm) {
    pressCommand(key::e, "e");
    ASSERT_NE(model.selectedItem(), nullptr);
    pressCommand(key::t, "t");
    EXPECT_FALSE(tagPanel.isVisible());
    EXPECT_THAT(hud.lines, IsEmpty());
}

TEST_F(FilingFromThePaletteTest, AClickIntoTheFormLeavesThePaletteOpen) {
    pressCommand(key::t, "t");
    const auto frame = world.panels().keyPanel()->frame;
    world.click({frame.x + frame.width / 2, frame.y + frame.height / 2});
    EXPECT_TRUE(palette.isVisible());
    EXPECT_TRUE(tagPanel.isVisible());
}

TEST_F(FilingFromThePaletteTest, AFormOutlivesThePaletteWithWhatWasTyped) {
    pressCommand(key::t, "t");
    form()->setProperty("tags", QStringLiteral("typed"));
    palette.close();
    ASSERT_TRUE(tagPanel.panel().isKey());
    QMetaObject::invokeMethod(form(), "save");
    EXPECT_FALSE(palette.isVisible());
    EXPECT_THAT(store.fetchHistory(3)[0].tags, ElementsAre("typed"));
    EXPECT_FALSE(world.panels().keyPanel());
}

}  // namespace
}  // namespace brimquill
