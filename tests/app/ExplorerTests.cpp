#include "Brimquill/Palette/PickerModel.h"
#include "Brimquill/Surfaces/TourEvents.h"
#include "tests/app/AppFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace brimquill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// "= Pinboards", "Work/Clients >1 (2) v" (depth 1, two clips, open; ">" alone when closed), "#tag (1)", "Images [1]",
/// "@app (1)".
std::string described(const ExplorerRow& row) {
    if (const auto* header = std::get_if<explorer_row::Header>(&row)) return "= " + header->title;
    if (const auto* tag = std::get_if<explorer_row::Tag>(&row))
        return "#" + tag->tag + " (" + std::to_string(tag->count) + ")";
    if (const auto* kind = std::get_if<explorer_row::Kind>(&row))
        return label(scope::Kind{kind->kind}) + " [" + std::to_string(kind->count) + "]";
    if (const auto* app = std::get_if<explorer_row::App>(&row))
        return "@" + app->name + " (" + std::to_string(app->count) + ")";
    const auto& folder = std::get<explorer_row::Folder>(row);
    const std::string tree = folder.hasChildren ? folder.expanded ? " v" : " >" : "";
    return folder.path + " " + std::to_string(folder.depth) + " (" + std::to_string(folder.count) + ")" + tree;
}

class ExplorerTest : public AppFixture {
protected:
    PickerModel model{{store, center, world.runLoop(), world.defaults(), [] { return std::vector<std::int64_t>{}; }}};
    Explorer& explorer = model.explorer();
    QAbstractItemModelTester tester{explorer.rowsForView(), QAbstractItemModelTester::FailureReportingMode::Fatal};

    std::int64_t add(const std::string& text, ClipKind kind = ClipKind::text, const std::string& app = "Editor") {
        world.advance(1);
        return store.insert(text, kind, {app, std::nullopt})->id;
    }
    std::int64_t file(const std::string& text, const std::string& path) {
        const auto id = add(text);
        store.setFolder(id, store.folder(path).id);
        return id;
    }
    /// Pinboards in two levels, three tags, two kinds, two applications.
    void fill() {
        file("a", "Work/Clients");
        file("b", "Work");
        store.folder("Alpha");
        store.folder("Work/Clients/Acme");
        store.setTags(add("c", ClipKind::image, "Paperwork"), {"work", "receipt"});
        store.setTags(add("d"), {"work"});
        store.deleteClip(file("gone", "Work"));
        model.reset();
        explorer.setExplorerOpen(true);
    }
    std::vector<std::string> rows() {
        std::vector<std::string> lines;
        for (const auto& row : explorer.explorerRows())
            lines.push_back(described(row));
        return lines;
    }
    std::vector<std::string> search(const std::string& text) {
        explorer.setExplorerSearch(text);
        return rows();
    }
    std::string selected() {
        const auto row = explorer.selectedRowSignature();
        return row ? described(*row) : "none";
    }
    void select(const std::string& line) {
        const auto lines = rows();
        const auto at = std::find(lines.begin(), lines.end(), line);
        ASSERT_NE(at, lines.end()) << line;
        explorer.setExplorerSelection(static_cast<int>(at - lines.begin()));
    }
    QVariant shown(int row, int role) { return explorer.rowsForView()->index(row).data(role); }
    std::string scopeKey() { return key(model.filter()); }
    std::vector<std::string> recents() {
        return world.defaults().stringArray(ScopeCatalog::recentsKey).value_or(std::vector<std::string>{});
    }
};

TEST_F(ExplorerTest, ListsTheTreeOpenAndTheFacetsUnderTheirHeaders) {
    fill();
    EXPECT_THAT(rows(), ElementsAre("= Pinboards", "Alpha 0 (0)", "Work 0 (2) v", "Work/Clients 1 (1) v",
                                    "Work/Clients/Acme 2 (0)", "= Tags", "#work (2)", "#receipt (1)", "= Types",
                                    "Text [3]", "Images [1]", "= Apps", "@Editor (3)", "@Paperwork (1)"));
}

TEST_F(ExplorerTest, NarrowsDownByWhatIsTyped) {
    fill();
    const std::vector<std::pair<const char*, std::vector<std::string>>> cases = {
        {"/work", {"= Pinboards", "Work 0 (2)", "Work/Clients 0 (1)", "Work/Clients/Acme 0 (0)"}},
        {"/", {"= Pinboards", "Alpha 0 (0)", "Work 0 (2)", "Work/Clients 0 (1)", "Work/Clients/Acme 0 (0)"}},
        {"#re", {"= Tags", "#receipt (1)"}},
        {"#", {"= Tags", "#work (2)", "#receipt (1)"}},
        {"work",
         {"= Pinboards", "Work 0 (2)", "Work/Clients 0 (1)", "Work/Clients/Acme 0 (0)", "= Tags", "#work (2)", "= Apps",
          "@Paperwork (1)"}},
        {"  CLIENTS\t", {"= Pinboards", "Work/Clients 0 (1)", "Work/Clients/Acme 0 (0)"}},
        {"imag", {"= Types", "Images [1]"}},
        {"nothing at all", {}},
    };
    for (const auto& [typed, expected] : cases)
        EXPECT_EQ(search(typed), expected) << typed;
    store.folder("C#rest");
    EXPECT_THAT(search("#re"), ElementsAre("= Pinboards", "C#rest 0 (0)", "= Tags", "#receipt (1)"))
        << "a pinboard whose name holds the prefix";
}

TEST_F(ExplorerTest, ListsTwelveApplicationsBeforeTheSearchApplies) {
    for (int n = 0; n < 14; ++n) {
        // The two that are listed last by their counts are out, whatever is searched for.
        for (int clip = 0; clip < (n < 12 ? 2 : 1); ++clip)
            add(std::to_string(n * 100 + clip), ClipKind::text, "app " + std::to_string(n));
    }
    EXPECT_EQ(search("app").size(), 13U) << "with the header";
    EXPECT_THAT(search("app 13"), IsEmpty());
}

TEST_F(ExplorerTest, AnEmptyStoreListsNothingAndEveryKeyIsHarmless) {
    explorer.setExplorerOpen(true);
    EXPECT_THAT(rows(), IsEmpty());
    explorer.explorerMove(+1);
    explorer.explorerExpand();
    explorer.explorerCollapse();
    explorer.explorerActivate();
    EXPECT_EQ(explorer.explorerSelection(), 0);
    EXPECT_TRUE(explorer.explorerOpen());
}

TEST_F(ExplorerTest, MovesOverHeadersAndStaysAtTheEnds) {
    fill();
    EXPECT_EQ(selected(), "= Pinboards");
    explorer.explorerMove(-1);
    EXPECT_EQ(selected(), "= Pinboards") << "nothing above";
    explorer.explorerMove(+1);
    EXPECT_EQ(selected(), "Alpha 0 (0)");
    explorer.explorerMove(-1);
    EXPECT_EQ(selected(), "Alpha 0 (0)") << "only a header above";
    select("Work/Clients/Acme 2 (0)");
    explorer.explorerMove(+1);
    EXPECT_EQ(selected(), "#work (2)");
    explorer.explorerMove(-1);
    EXPECT_EQ(selected(), "Work/Clients/Acme 2 (0)");
    select("@Paperwork (1)");
    explorer.explorerMove(+1);
    EXPECT_EQ(selected(), "@Paperwork (1)");
    explorer.setExplorerSelection(99);
    explorer.explorerMove(+1);
    EXPECT_EQ(selected(), "none");
    explorer.explorerMove(-1);
    EXPECT_EQ(selected(), "@Paperwork (1)") << "back from beyond the end";
}

TEST_F(ExplorerTest, OpensAndClosesBranches) {
    fill();
    select("Work 0 (2) v");
    explorer.explorerExpand();
    explorer.explorerCollapse();
    EXPECT_EQ(selected(), "Work 0 (2) >");
    EXPECT_EQ(rows()[3], "= Tags");
    explorer.explorerCollapse();
    EXPECT_EQ(selected(), "Work 0 (2) >") << "nowhere to climb to";
    explorer.explorerExpand();
    EXPECT_EQ(rows()[3], "Work/Clients 1 (1) v");

    select("Work/Clients 1 (1) v");
    explorer.explorerCollapse();
    EXPECT_EQ(selected(), "Work/Clients 1 (1) >");
    explorer.explorerCollapse();
    EXPECT_EQ(selected(), "Work 0 (2) >") << "one press climbs and closes";

    select("Alpha 0 (0)");
    explorer.setExpandedFolderIds({});
    explorer.explorerExpand();
    EXPECT_THAT(explorer.expandedFolderIds(), IsEmpty()) << "a leaf does not open";
    select("#work (2)");
    explorer.explorerCollapse();
    EXPECT_EQ(selected(), "#work (2)");
}

TEST_F(ExplorerTest, MakesTheChosenRowTheScope) {
    fill();
    const auto clients = "folder:" + std::to_string(store.folder("Work/Clients").id);
    const std::vector<std::tuple<std::string, std::string, std::vector<std::string>>> cases = {
        {"Work/Clients 1 (1) v", clients, {clients}},
        {"#receipt (1)", "tag:receipt", {"tag:receipt", clients}},
        {"Images [1]", "kind:image", {"tag:receipt", clients}},
        {"@Paperwork (1)", "app:Paperwork", {"tag:receipt", clients}},
    };
    for (const auto& [line, scope, recent] : cases) {
        explorer.setExplorerOpen(true);
        select(line);
        explorer.explorerActivate();
        EXPECT_EQ(scopeKey(), scope);
        EXPECT_EQ(recents(), recent) << line;
        EXPECT_EQ(model.items().size(), 1U) << line;
        EXPECT_FALSE(explorer.explorerOpen());
    }
    for (const int nowhere : {0, 99, -1}) {
        explorer.setExplorerOpen(true);
        explorer.setExplorerSelection(nowhere);
        explorer.explorerActivate();
        EXPECT_TRUE(explorer.explorerOpen()) << nowhere;
        EXPECT_EQ(scopeKey(), "app:Paperwork") << nowhere;
    }
}

TEST_F(ExplorerTest, OpeningBeginsAnewAndIsBroadcast) {
    fill();
    int openings = 0;
    const auto observation =
        center.observe(TourEvents::explorerDidOpen, &model, [&](const Notification&) { ++openings; });
    search("cli");
    explorer.explorerMove(+1);
    EXPECT_EQ(explorer.explorerSelection(), 1);
    search("clie");
    EXPECT_EQ(explorer.explorerSelection(), 0) << "typing begins at the top again";
    explorer.setExplorerOpen(false);
    EXPECT_EQ(explorer.explorerSearch(), "clie");
    EXPECT_EQ(openings, 0);
    explorer.setExplorerOpen(true);
    EXPECT_EQ(explorer.explorerSearch(), "");
    explorer.setExplorerSearch("x");
    explorer.setExplorerOpen(true);
    EXPECT_EQ(explorer.explorerSearch(), "");
    EXPECT_EQ(openings, 2);
}

TEST_F(ExplorerTest, EveryAppearanceStartsClosedWithTheTreeFullyOpen) {
    fill();
    explorer.setExpandedFolderIds({});
    model.reset();
    EXPECT_FALSE(explorer.explorerOpen());
    EXPECT_EQ(explorer.expandedFolderIds().size(), 4U);
}

TEST_F(ExplorerTest, RowsAreAlwaysThoseOfTheStore) {
    fill();
    const auto last = static_cast<int>(rows().size()) - 1;
    explorer.setExplorerSelection(last);
    store.setTags(add("e", ClipKind::file, "Third"), {"new"});
    EXPECT_EQ(rows().size(), static_cast<std::size_t>(last) + 4);
    store.clearUnpinned();
    EXPECT_EQ(rows().size(), 9U) << "the tree and the tags, which deleted clips keep";
    EXPECT_EQ(selected(), "none");
    explorer.explorerActivate();
    EXPECT_TRUE(explorer.explorerOpen());
    store.renameFolder(store.folder("Alpha").id, "Zeta");
    EXPECT_THAT(search("/a"), testing::Contains("Zeta 0 (0)"));
}

TEST_F(ExplorerTest, IsMadeReadyWhileThePaletteStandsWhateverTheStoreDoesMeanwhile) {
    fill();
    explorer.setExplorerSearch("work");
    explorer.setExplorerOpen(false);
    const auto& list = *explorer.rowsForView();
    store.folder("Zeta");
    world.advance(1);
    EXPECT_EQ(list.rowCount(), 8) << "nothing is read while no palette stands";
    model.setActive(true);
    world.advance(0.31);
    store.folder("Zulu");
    world.advance(1);
    EXPECT_EQ(list.rowCount(), 16) << "as it will open: the whole tree with the two new pinboards";
    explorer.setExplorerOpen(true);
    EXPECT_EQ(list.rowCount(), static_cast<int>(rows().size()));
}

TEST_F(ExplorerTest, EnduresATreeThatOtherMachinesHaveTangled) {
    const auto now = world.runLoop().now();
    store.applyRemoteFolder("loop-a", "A", std::nullopt, now);
    store.applyRemoteFolder("loop-b", "B", "loop-a", now);
    store.applyRemoteFolder("loop-a", "A", "loop-b", now + 1);
    const auto loop = store.anyFolder("loop-a");
    ASSERT_TRUE(loop && loop->folder.parentId) << "the loop was not made";
    store.setFolder(add("lost"), loop->folder.id);
    file("found", "Outer/Inner");
    model.reset();
    explorer.setExplorerOpen(true);
    EXPECT_EQ(rows()[1], "Outer 0 (1) v");
    EXPECT_EQ(rows()[2], "Outer/Inner 1 (1)");
    EXPECT_EQ(rows()[3], "= Types") << "what hangs from no top is not in the tree";
    EXPECT_EQ(search("/").size(), 5U) << "and is found by its name";
}

TEST_F(ExplorerTest, TheViewFollows) {
    fill();
    const auto& list = *explorer.rowsForView();
    const auto same = [&] { return list.rowCount() == static_cast<int>(rows().size()); };
    EXPECT_TRUE(same());
    EXPECT_EQ(shown(3, ExplorerListModel::labelRole), QStringLiteral("Clients"));
    EXPECT_EQ(shown(3, ExplorerListModel::placeRole), QString());
    EXPECT_EQ(shown(3, ExplorerListModel::depthRole), 1);
    EXPECT_EQ(shown(3, ExplorerListModel::hasChildrenRole), true);
    EXPECT_EQ(shown(10, ExplorerListModel::fillRole), QStringLiteral("#E51D59")) << "pictures are pink";
    explorer.disclosureClicked(2);
    EXPECT_EQ(shown(2, ExplorerListModel::expandedRole), false);
    EXPECT_TRUE(same());
    explorer.disclosureClicked(2);
    explorer.disclosureClicked(0);
    explorer.disclosureClicked(99);
    EXPECT_TRUE(same());
    explorer.setSearchFromView(QStringLiteral("acme"));
    EXPECT_EQ(shown(1, ExplorerListModel::labelRole), QStringLiteral("Acme"));
    EXPECT_EQ(shown(1, ExplorerListModel::placeRole), QStringLiteral("Work/Clients"));
    explorer.setSearchFromView(QStringLiteral("#re"));
    EXPECT_EQ(shown(1, ExplorerListModel::typeRole), QStringLiteral("tag"));
    EXPECT_TRUE(same());
    explorer.setExplorerSearch("");
    model.setActive(true);
    QSignalSpy changes(explorer.rowsForView(), &QAbstractItemModel::dataChanged);
    store.setFolder(add("filed later"), store.folder("Alpha").id);
    world.advance(0.3);
    EXPECT_EQ(shown(1, ExplorerListModel::countRole), 1);
    EXPECT_EQ(changes.size(), 1);
    explorer.rowClicked(1);
    EXPECT_EQ(label(model.filter()), "Alpha");
    EXPECT_FALSE(explorer.explorerOpen());
}

}  // namespace
}  // namespace brimquill
