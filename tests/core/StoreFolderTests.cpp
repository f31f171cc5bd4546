#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>

#include <map>
#include <random>

namespace brimquill::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class StoreFolders : public StoreTest {
protected:
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const auto& folder : store.folders())
            names.push_back(store.path(folder));
        return names;
    }
    ClipFolder current(std::int64_t id) {
        for (const auto& folder : store.folders()) {
            if (folder.id == id) return folder;
        }
        ADD_FAILURE() << "no folder " << id;
        return {};
    }
};

TEST_F(StoreFolders, PathIsFoundOrCreated) {
    const auto clients = store.folder("Work/Clients");
    EXPECT_EQ(changes.take(), 2);
    EXPECT_EQ(clients.name, "Clients");
    EXPECT_EQ(store.path(clients), "Work/Clients");
    EXPECT_EQ(clients, current(clients.id));
    for (const auto* same : {"work / clients ", "/Work //Clients/", "WORK/ \t/CLIENTS"}) {
        EXPECT_EQ(store.folder(same), clients) << same;
    }
    EXPECT_EQ(changes.take(), 0);
    EXPECT_NE(store.folder("Clients").id, clients.id) << "another parent";
    const auto umlaut = store.folder("Ärger");
    EXPECT_EQ(store.folder("a\u0308RGER"), umlaut);
    EXPECT_THAT(names(), UnorderedElementsAre("Clients", "Work/Clients", "Work", "Ärger"));
}

TEST_F(StoreFolders, PathWithoutComponentsCreatesNothing) {
    for (const auto* path : {"", "//", " / \t/"}) {
        EXPECT_EQ(store.folder(path), (ClipFolder{0, path, {}, "", {}})) << path;
    }
    EXPECT_EQ(changes.take(), 0);
    EXPECT_THAT(store.folders(), IsEmpty());
}

TEST_F(StoreFolders, DeletingMovesChildrenAndClipsUpOneLevel) {
    const auto clients = store.folder("Work/Clients");
    const auto acme = store.folder("Work/Clients/Acme");
    const auto filed = insertText("filed"), gone = insertText("gone");
    store.setFolder(filed, clients.id);
    store.setFolder(gone, clients.id);
    store.deleteClip(gone);
    store.deleteFolder(clients.id);
    EXPECT_EQ(store.path(current(acme.id)), "Work/Acme");
    EXPECT_EQ(store.clip(filed)->folderId, clients.parentId);
    EXPECT_EQ(store.clip(gone)->folderId, clients.parentId) << "deleted clips are re-filed too";
    store.deleteFolder(*clients.parentId);
    EXPECT_THAT(names(), ElementsAre("Acme"));
    EXPECT_EQ(store.clip(filed)->folderId, std::nullopt);
    EXPECT_NE(store.folder("Work").id, *clients.parentId) << "a deleted board is not found again";
}

TEST_F(StoreFolders, CountsLeaveOutWhatIsDeleted) {
    const auto work = store.folder("Work"), clients = store.folder("Work/Clients");
    for (const auto folder : {work.id, clients.id, clients.id})
        store.setFolder(insertText("clip"), folder);
    for (int count = 0; count < 3; ++count)
        store.setFolder(store.insert("ocr", ClipKind::ocr)->id, clients.id);
    store.deleteClip(4);
    const int inWork = store.clipCount(work.id), inClients = store.clipCount(clients.id);
    EXPECT_EQ(inWork, 1);
    EXPECT_EQ(store.subtreeClipCount(work.id), inWork + inClients);
    EXPECT_EQ(store.clipCount(999), 0);
    insertText("not filed");
    EXPECT_EQ(store.clipCounts(), (std::map<std::int64_t, int>{{work.id, inWork}, {clients.id, inClients}}));
    database.run("UPDATE folders SET deleted = 1 WHERE id = " + std::to_string(clients.id));
    EXPECT_EQ(store.subtreeClipCount(work.id), inWork);
    EXPECT_EQ(store.path(clients), "Work/Clients");
    database.run("UPDATE folders SET deleted = 1 WHERE id = " + std::to_string(work.id));
    EXPECT_EQ(store.path(clients), "Clients") << "a missing parent ends the path";
}

TEST_F(StoreFolders, NamesAndColoursAreStoredAsGiven) {
    const auto one = store.folder("one"), two = store.folder("two");
    store.renameFolder(one.id, "two");
    EXPECT_THAT(names(), ElementsAre("two", "two"));
    store.renameFolder(two.id, "a/b'; DROP TABLE folders; --");
    EXPECT_THAT(names(), ElementsAre("a/b'; DROP TABLE folders; --", "two"));
    store.setFolderColor(one.id, "no colour at all");
    EXPECT_EQ(current(one.id).color, "no colour at all");
    store.setFolderColor(one.id, {});
    EXPECT_EQ(current(one.id).color, std::nullopt);
}

TEST_F(StoreFolders, CycleFromElsewhereHangsNothing) {
    const auto a = store.folder("a"), b = store.folder("a/b");
    database.run("UPDATE folders SET parent_id = " + std::to_string(b.id) + " WHERE id = " + std::to_string(a.id));
    EXPECT_THAT(store.descendantIds(a.id), ElementsAre(a.id, b.id));
    EXPECT_THAT(store.path(current(b.id)), ::testing::EndsWith("a/b"));
    EXPECT_EQ(store.subtreeClipCount(b.id), 0);
    EXPECT_FALSE(store.moveFolder(a.id, b.id));
    EXPECT_TRUE(store.moveFolder(a.id, {})) << "the way out";
}

TEST_F(StoreFolders, NoMoveEverMakesACycle) {
    std::mt19937 random(11);
    std::vector<std::int64_t> ids(12);
    std::map<std::int64_t, std::int64_t> parents;  // 0 is the top level
    for (std::size_t at = 0; at < ids.size(); ++at)
        ids[at] = store.folder("f" + std::to_string(at)).id;
    const auto isAtOrBelow = [&parents](std::int64_t id, std::int64_t ancestor) {
        for (; id != 0; id = parents[id]) {
            if (id == ancestor) return true;
        }
        return false;
    };
    for (int round = 0; round < 400; ++round) {
        const auto moved = ids[random() % ids.size()];
        const auto target = random() % 6 == 0 ? 0 : ids[random() % ids.size()];
        const bool isAllowed = !isAtOrBelow(target, moved);
        ASSERT_EQ(store.moveFolder(moved, target == 0 ? std::nullopt : std::optional(target)), isAllowed);
        if (isAllowed) parents[moved] = target;
    }
    for (const auto& folder : store.folders()) {
        EXPECT_EQ(folder.parentId.value_or(0), parents[folder.id]);
        for (const auto id : ids)
            EXPECT_EQ(store.descendantIds(id).contains(folder.id), isAtOrBelow(folder.id, id));
    }
}

}  // namespace
}  // namespace brimquill::test
