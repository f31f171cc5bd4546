#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <thread>

namespace brimquill::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

class StoreSync : public StoreTest {
protected:
    ClipStore::RemoteClip remote(const std::string& uuid, const std::string& text, double age = 0) const {
        return {.uuid = uuid, .text = text, .createdAt = {1000.5}, .modifiedAt = now + -age};
    }
    std::string syncImage(const std::string& uuid) const {
        return (store.imagesDirectory / ("sync-" + uuid + ".png")).string();
    }
};

TEST_F(StoreSync, RemoteClipArrivesWhole) {
    const auto board = store.folder("Board");
    auto incoming = remote("r1", "new text");
    incoming.kind = ClipKind::ocr;
    incoming.sourceApp = "Editor";
    incoming.pinned = true;
    incoming.name = "";
    incoming.keyword = ";k";
    incoming.folderUuid = board.uuid;
    incoming.tags = "a,b";
    incoming.imageData = std::string("\x89PNG\0data", 9);
    changes.take();
    store.applyRemoteClip(incoming);

    ClipItem expected;
    expected.id = 1;
    expected.kind = ClipKind::ocr;
    expected.text = "new text";
    expected.createdAt = {1000.5};
    expected.sourceApp = "Editor";
    expected.pinned = true;
    expected.imagePath = syncImage("r1");
    expected.name = "";
    expected.keyword = ";k";
    expected.folderId = board.id;
    expected.tags = {"a", "b"};
    expected.uuid = "r1";
    expected.modifiedAt = now;
    EXPECT_EQ(store.clip("r1"), expected);
    EXPECT_EQ(fileBytes(syncImage("r1")), *incoming.imageData);
    EXPECT_EQ(modeOf(syncImage("r1")), 0600U);
    EXPECT_EQ(changes.take(), 1);
    EXPECT_EQ(changes.takeRemote(), 1);
    EXPECT_FALSE(store.isApplyingRemoteChanges());
    EXPECT_THAT(textsOf(store.search("new te", 5)), ElementsAre("new text"));
}

TEST_F(StoreSync, NewerRemoteClipReplacesAndRevivesButKeepsWhatItDoesNotCarry) {
    const auto path = makeImage("clip-1.png");
    const auto local = *store.insert("old", ClipKind::image, {"App", "com.app"}, path, now + 500);
    store.deleteClip(local.id);
    advance(10);
    store.applyRemoteClip(remote(local.uuid, "replaced"));
    auto clip = *store.clip(local.uuid);
    EXPECT_FALSE(clip.deleted);
    EXPECT_EQ(clip.text, "replaced");
    EXPECT_EQ(clip.kind, ClipKind::text);
    EXPECT_EQ(clip.sourceApp, std::nullopt);
    EXPECT_EQ(clip.createdAt, local.createdAt);
    EXPECT_EQ(clip.sourceBundleId, "com.app");
    EXPECT_EQ(clip.expiresAt, local.expiresAt);
    EXPECT_EQ(clip.imagePath, path) << "no picture came, so the path stays";
    EXPECT_THAT(textsOf(store.search("repl", 5)), ElementsAre("replaced"));
    EXPECT_THAT(store.search("old", 5), IsEmpty());

    advance(10);
    auto withImage = remote(local.uuid, "again");
    withImage.imageData = "png";
    store.applyRemoteClip(withImage);
    EXPECT_EQ(store.clip(local.uuid)->imagePath, syncImage(local.uuid));
}

TEST_F(StoreSync, EqualTimesKeepTheLocalClipButWriteThePicture) {
    const auto local = *store.insert("local", ClipKind::image);
    auto incoming = remote(local.uuid, "remote");
    incoming.imageData = "png";
    changes.take();
    store.applyRemoteClip(incoming);
    EXPECT_EQ(store.clip(local.uuid), local);
    EXPECT_EQ(changes.take(), 0);
    EXPECT_EQ(fileBytes(syncImage(local.uuid)), "png");
    incoming.modifiedAt = {std::nextafter(now.seconds, 4e9)};
    store.applyRemoteClip(incoming);
    EXPECT_EQ(store.clip(local.uuid)->text, "remote") << "times count to the last bit";
}

TEST_F(StoreSync, HostileUuidLeadsNowhere) {
    for (const auto* uuid : {"/../../escape", "a/b", "../x", ""}) {
        auto incoming = remote(uuid, uuid);
        incoming.imageData = "png";
        store.applyRemoteClip(incoming);
        EXPECT_EQ(store.clip(std::string(uuid))->text, uuid);
    }
    EXPECT_FALSE(std::filesystem::exists(directory / "escape.png"));
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(store.imagesDirectory))
        names.push_back(entry.path().filename());
    EXPECT_THAT(names, ElementsAre("sync-.png"));
}

TEST_F(StoreSync, PictureThatCannotBeWrittenDoesNotHoldUpTheClip) {
    std::filesystem::create_directories(syncImage("r1") + "/inner");
    auto incoming = remote("r1", "text");
    incoming.imageData = "png";
    store.applyRemoteClip(incoming);
    EXPECT_EQ(store.clip("r1")->imagePath, std::nullopt);
}

TEST_F(StoreSync, RemoteDeletionWinsOnceWhateverTheTimes) {
    const auto path = makeImage("clip-1.png");
    const auto local = *store.insert("x", ClipKind::image, {}, path);
    advance(5);
    changes.take();
    store.applyRemoteClipDeletion(local.uuid);
    EXPECT_TRUE(store.clip(local.uuid)->deleted);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(changes.takeRemote(), 1);
    advance(5);
    store.applyRemoteClipDeletion(local.uuid);
    store.applyRemoteClipDeletion("unknown");
    EXPECT_EQ(changes.take(), 1);
    EXPECT_LT(store.clip(local.uuid)->modifiedAt, now);
}

TEST_F(StoreSync, RemoteFoldersFindTheirParentOrStandAtTheTop) {
    store.applyRemoteFolder("child", "Child", "parent", now);
    store.applyRemoteFolder("parent", "Parent", {}, now);
    EXPECT_EQ(store.anyFolder("child")->folder.parentId, std::nullopt) << "it came before its parent";
    store.applyRemoteFolder("child", "Child", "parent", now + 1);
    const auto parent = store.anyFolder("parent")->folder.id;
    EXPECT_EQ(store.anyFolder("child")->folder.parentId, parent);
    EXPECT_EQ(changes.takeRemote(), 3);

    const auto child = store.anyFolder("child")->folder.id;
    store.setFolderColor(child, "red");
    const auto clip = insertText("filed");
    store.setFolder(clip, child);
    store.applyRemoteFolderDeletion("parent");
    EXPECT_TRUE(store.anyFolder("parent")->deleted);
    EXPECT_EQ(store.anyFolder("child")->folder.parentId, std::nullopt);
    advance(5);
    store.applyRemoteFolder("child", "Renamed", "parent", now);
    EXPECT_EQ(store.anyFolder("child")->folder.parentId, parent) << "a deleted parent counts as found";
    EXPECT_EQ(database.value("SELECT name, color FROM folders WHERE uuid = 'child'"), "Renamed|red");
    store.applyRemoteFolderDeletion("child");
    EXPECT_EQ(store.clip(clip)->folderId, parent);
    EXPECT_EQ(store.anyFolder("nobody").has_value(), false);

    auto incoming = remote("r1", "filed nowhere");
    incoming.folderUuid = "nobody";
    store.applyRemoteClip(incoming);
    EXPECT_EQ(store.clip("r1")->folderId, std::nullopt);
}

TEST_F(StoreSync, ChangesSinceLeaveOutSecretsAndKeepDeletions) {
    const auto old = insertText("old");
    const auto mark = now;
    const auto secret = store.insert("123456", ClipKind::ocr, {}, {}, now + 1)->id;
    const auto gone = insertText("gone");
    store.deleteClip(gone);
    advance(10);
    store.sweepExpired();
    database.run("INSERT INTO clips (text, created_at, modified_at) VALUES ('no uuid', 1, 9e9)");
    EXPECT_THAT(textsOf(store.clipsChangedSince(mark)), ElementsAre("gone"));
    EXPECT_TRUE(store.clip(secret)->deleted);
    store.promoteToSnippet(secret, "kept");
    store.setTags(old, {"a"});
    EXPECT_THAT(textsOf(store.clipsChangedSince(mark)), UnorderedElementsAre("old", "123456", "gone"));
    EXPECT_THAT(textsOf(store.clipsChangedSince(Date::distantPast())), SizeIs(3));
    EXPECT_THAT(textsOf(store.allClips()), ElementsAre("old", "no uuid"));

    const auto board = store.folder("Board"), other = store.folder("Other");
    store.setFolderColor(board.id, "red");
    store.deleteFolder(board.id);
    EXPECT_THAT(store.foldersChangedSince(now), IsEmpty());
    const auto folders = store.foldersChangedSince(mark);
    ASSERT_THAT(folders, SizeIs(2));
    EXPECT_EQ(folders[0].folder.uuid, board.uuid);
    EXPECT_EQ(folders[0].folder.color, std::nullopt);
    EXPECT_EQ(folders[0].modifiedAt, now);
    EXPECT_TRUE(folders[0].deleted);
    EXPECT_FALSE(folders[1].deleted);
}

TEST_F(StoreSync, ImportNeverOverwrites) {
    const ClipStore::ImportedClip incoming{.uuid = "i1",
                                           .kind = ClipKind::file,
                                           .text = "/a",
                                           .createdAt = {5.5},
                                           .source = {"App", "com.app"},
                                           .pinned = true,
                                           .name = "n",
                                           .keyword = "",
                                           .folderId = 4,
                                           .tags = {"a", "b"},
                                           .imagePath = "/i.png"};
    ASSERT_TRUE(store.insertImported(incoming));
    EXPECT_EQ(database.value("SELECT text, kind, created_at, source_app, pinned, name, keyword, folder_id, tags, "
                             "image_path, source_bundle_id, expires_at, deleted FROM clips WHERE uuid = 'i1'"),
              "/a|file|5.5|App|1|n|NULL|4|a,b|/i.png|com.app|NULL|0");
    EXPECT_EQ(store.clip("i1")->modifiedAt, now);
    store.deleteClip(store.clip("i1")->id);
    const auto before = database.rows("SELECT * FROM clips");
    advance(5);
    EXPECT_EQ(store.insertImported(incoming), std::nullopt);
    EXPECT_EQ(database.rows("SELECT * FROM clips"), before);
}

TEST_F(StoreSync, RecordDataIsKeptByUuid) {
    const std::string bytes("\0a\xff", 3);
    EXPECT_EQ(store.syncRecordData("u"), std::nullopt);
    store.setSyncRecordData(bytes, "u");
    EXPECT_EQ(store.syncRecordData("u"), bytes);
    store.setSyncRecordData("", "u");
    EXPECT_EQ(store.syncRecordData("u"), "");
    store.setSyncRecordData({}, "u");
    EXPECT_EQ(store.syncRecordData("u"), std::nullopt);
    EXPECT_EQ(database.value("SELECT count(*) FROM sync_meta"), "0");
}

TEST_F(StoreSync, OnlyTheApplyingThreadReadsAsApplying) {
    bool seenHere = false, seenElsewhere = true, seenOfOtherStore = true;
    const TemporaryDirectory otherDirectory;
    const ClipStore otherStore(otherDirectory.path(), center);
    const auto observation = center.observe(ClipStore::didChangeNotification, &store, [&](const auto&) {
        seenHere = store.isApplyingRemoteChanges();
        seenOfOtherStore = otherStore.isApplyingRemoteChanges();
        std::thread([&] { seenElsewhere = store.isApplyingRemoteChanges(); }).join();
    });
    store.applyRemoteClip(remote("r1", "x"));
    EXPECT_TRUE(seenHere);
    EXPECT_FALSE(seenElsewhere);
    EXPECT_FALSE(seenOfOtherStore);
}

TEST_F(StoreSync, LastWriterWinsInAnyOrderOfArrival) {
    std::mt19937 random(5);
    for (int round = 0; round < 25; ++round) {
        const auto uuid = "r" + std::to_string(round);
        std::vector<int> versions{1, 2, 3, 4, 5, 6};
        std::shuffle(versions.begin(), versions.end(), random);
        for (const int version : versions) {
            auto incoming = remote(uuid, "version " + std::to_string(version), -version);
            incoming.tags = std::to_string(version);
            store.applyRemoteClip(incoming);
            store.applyRemoteFolder("f" + uuid, std::to_string(version), {}, now + version);
        }
        EXPECT_EQ(store.clip(uuid)->text, "version 6");
        EXPECT_THAT(store.clip(uuid)->tags, ElementsAre("6"));
        EXPECT_EQ(store.clip(uuid)->modifiedAt, now + 6);
        EXPECT_EQ(store.anyFolder("f" + uuid)->folder.name, "6");
    }
}

}  // namespace
}  // namespace brimquill::test
