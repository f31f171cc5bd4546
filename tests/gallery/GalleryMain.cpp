// Draws the palette in every state, and its forms, light and dark, into PNG files of the directory that is its
// argument.

#include "Brimquill/Palette/PickerActions.h"
#include "Brimquill/Palette/PickerModel.h"
#include "Brimquill/Palette/PickerPanelController.h"
#include "Brimquill/Views/ViewHost.h"
#include "Platform/Headless/World.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPainter>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>

#include <cstdio>
#include <fstream>

namespace brimquill {
namespace {

class SilentHUD final : public HUD {
public:
    void show(const std::string&, const std::string&) override {}
};

QString picture(const QString& directory, const QString& name, QSize size, bool isTransparent = false) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(isTransparent ? Qt::transparent : QColor("#24485F"));
    QPainter painter(&image);
    QLinearGradient sky(0, 0, size.width(), size.height());
    sky.setColorAt(0, QColor("#F6B26B"));
    sky.setColorAt(1, QColor("#5B2A86"));
    painter.setBrush(sky);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(image.rect().adjusted(2, 2, -2, -2));
    auto path = directory + QLatin1Char('/') + name;
    image.save(path);
    return path;
}

class Gallery final {
public:
    Gallery(QString output, QString suffix) : output_(std::move(output)), suffix_(std::move(suffix)) {
        world_.workspace().setIcon("org.example.editor", disc(36, QColor(0x2E, 0x86, 0xAB)));
        controller_.show();
        view_ = qobject_cast<QQuickView*>(world_.panels().records().back()->window);
    }

    void run() {
        for (const bool dark : {false, true}) {
            settings_.setAppearanceMode(dark ? "dark" : "light");
            suffixed_ = (dark ? QStringLiteral("-dark") : QStringLiteral("-light")) + suffix_;
            if (!dark) {
                draw("empty", 1200);
                model_.setSearchText("a query that nothing in the hoard answers, however long it is typed");
                draw("no-match", 1200);
                model_.reset();
                model_.explorer().setExplorerOpen(true);
                draw("explorer-empty", 1200);
                fill();
            }
            drawAll();
            drawForms();
        }
        fillMore();
    }

private:
    void drawAll() {
        model_.reset();
        Q_EMIT controller_.appearing();
        draw("strip", 1872);
        draw("narrow", 976);
        model_.toggleSelection(1);
        model_.toggleSelection(3);
        model_.showCopied(model_.items()[2].id);
        settings_.setCapturePaused(true);
        draw("marked", 1872);
        world_.advance(2);
        settings_.setCapturePaused(false);
        model_.reset();
        for (int step = 0; step < 14; ++step)
            model_.moveSelection(1);
        draw("scrolled", 1872);
        for (int step = 0; step < 20; ++step)
            model_.moveSelection(1);
        draw("files", 1872);
        controller_.menu()->openAt(3, 700, 120);
        controller_.menu()->setCurrent(2);
        draw("menu", 1200);
        controller_.menu()->close();
        model_.select(2);
        model_.setPreviewOpen(true);
        draw("preview-text", 1200);
        selectLast(ClipKind::image);
        draw("preview-image", 1200);
        for (std::size_t at = 0; at < model_.items().size(); ++at) {
            if (model_.items()[at].imagePath.value_or("").ends_with("broken.png")) model_.select(static_cast<int>(at));
        }
        draw("preview-broken", 1200);
        model_.setPreviewOpen(false);
        model_.setCheatSheetOpen(true);
        draw("cheat-sheet", 1200);
        model_.setCheatSheetOpen(false);
        drawExplorer();
        model_.showEmoji();
        model_.setSearchText("fa");
        draw("emoji", 1872);
        model_.reset();
        model_.toggleType(ContentType::link);
        model_.jumpToTopTag();
        draw("type", 1872);
        model_.toggleType(ContentType::link);
    }

    void drawExplorer() {
        model_.reset();
        auto& explorer = model_.explorer();
        explorer.setExplorerOpen(true);
        explorer.explorerMove(1);
        draw("explorer", 1200);
        for (int step = 0; step < 5; ++step)
            explorer.explorerMove(1);
        explorer.explorerCollapse();
        draw("explorer-collapsed", 1200);
        for (int step = 0; step < 12; ++step)
            explorer.explorerMove(1);
        draw("explorer-scrolled", 976);
        explorer.setExplorerSearch("r");
        explorer.explorerMove(1);
        draw("explorer-search", 1200);
        explorer.setExplorerSearch("nothing of that name");
        draw("explorer-no-match", 1200);
        explorer.setExplorerOpen(false);
    }

    void selectLast(ClipKind kind) {
        for (std::size_t at = model_.items().size(); at-- > 0;) {
            if (model_.items()[at].kind == kind) return model_.select(static_cast<int>(at));
        }
    }

    /// A disc of this colour, about as an icon is.
    static platform::Image disc(int edge, const QColor& color) {
        QImage image(edge, edge, QImage::Format_RGBA8888);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawEllipse(QRectF(1, 1, edge - 2, edge - 2));
        painter.end();
        return {edge, edge, platform::Bytes(image.constBits(), image.constBits() + image.sizeInBytes())};
    }

    void insert(const std::string& text, ClipKind kind = ClipKind::text, const std::optional<std::string>& image = {},
                std::optional<Date> expires = {}) {
        now_ = now_ + 1;
        store_.insert(text, kind, {"Editor", "org.example.editor"}, image, expires);
    }

    /// Worst inputs, and more chips than the bar has room for.
    void fillMore() {
        std::string deep;
        for (int level = 0; level < 100; ++level)
            deep += "/level" + std::to_string(level);
        insert(deep, ClipKind::file);
        insert("");
        insert("Total 1,204.50", ClipKind::image,
               picture(directory_.path(), QStringLiteral("photo.png"), {1200, 900}).toStdString());
        auto filed = store_.fetchHistory(4);
        for (int tag = 0; tag < 30; ++tag) {
            const auto name = (tag % 5 == 0 ? "a rather long tag number " : "tag ") + std::to_string(tag);
            store_.setTags(filed[static_cast<std::size_t>(tag) % filed.size()].id, {name});
            model_.reset();
            model_.chooseScope(scope::Tag{name});
        }
        model_.reset();
        draw("many-chips", 1024);
        draw("worst", 1872);
    }

    void fill() {
        const auto in = [](const char* name) { return QString::fromUtf8(name); };
        const auto folder = directory_.path();
        insert("/nowhere/that/is/known.txt", ClipKind::file);
        const auto plain = folder + QStringLiteral("/plain");
        std::ofstream(plain.toStdString()) << "x";
        insert(plain.toStdString(), ClipKind::file);
        const auto deep = folder + QStringLiteral("/a-directory-with-a-name-of-some-length").repeated(1);
        const auto file = deep + QLatin1Char('/') + QStringLiteral("report-").repeated(20) + QStringLiteral(".pdf");
        QDir().mkpath(deep);
        std::ofstream(file.toStdString()) << "x";
        world_.workspace().setFileIcon(file.toStdString(), disc(80, QColor(0xC9, 0x3C, 0x3C)));
        insert(file.toStdString(), ClipKind::file);
        insert(file.toStdString() + "\n" + file.toStdString() + "2", ClipKind::file);
        insert("", ClipKind::image, picture(folder, in("wide.png"), {12000, 20}).toStdString());
        insert("", ClipKind::image, picture(folder, in("tiny.png"), {16, 16}).toStdString());
        insert("", ClipKind::image, picture(folder, in("clear.png"), {400, 300}, true).toStdString());
        std::ofstream((folder + in("/broken.png")).toStdString()) << "\x89PNG\r\n\x1a\nnothing more";
        insert("", ClipKind::image, (folder + in("/broken.png")).toStdString());
        insert("Invoice 2041\nTotal 1,204.50", ClipKind::ocr, picture(folder, in("ocr.png"), {300, 200}).toStdString());
        insert("#1F7A8C");
        insert("#fff");
        insert("😀 👩‍👩‍👧‍👦 🇩🇪 🇯🇵 🏳️‍🌈 👍🏽 arrows ← ↩ → ⌘⇧⌥");
        insert(
            "يولد جميع الناس أحرارًا متساوين في الكرامة والحقوق\nوقد وهبوا عقلاً وضميرًا\nوعليهم أن يعامل بعضهم "
            "بعضًا\nبروح الإخاء");
        insert(std::string(5000, 'x'));
        insert("日本語のテキストと中文字符混在の段落です。長い行は折り返されます。");
        insert("483920", ClipKind::text, {}, now_ + 600);
        insert("https://example.org/a/path/that/is/rather/long?with=query&and=more#fragment");
        insert(
            "The kettle boils at noon; bring two cups and the good biscuits. The rest of the letter is about the "
            "garden, which wants rain, and about the cat, who does not. There is more to say than fits on a card, "
            "so it ends somewhere, and the reader is asked to open it.");
        insert(" ");
        const auto pinned = store_.fetchHistory(1).front().id;
        insert("rsync -a --delete notes/ backup:notes/");
        store_.setPinned(store_.fetchHistory(1).front().id, true);
        store_.setTags(pinned, {"garden"});
        store_.createSnippet("Signature with a long name that is elided", "Kind regards,\nA. Writer");
        for (const char* path : {"Work", "Work/Clients/Northern Lights GmbH/2026", "Recipes", "Travel",
                                 "Recipes/A pinboard whose name is so long that it cannot stand in one line", "سفر"})
            store_.folder(path);
        const auto filed = store_.fetchHistory(9);
        for (std::size_t at = 4; at < filed.size(); ++at)
            store_.setFolder(filed[at].id, store_.folder(at % 2 == 0 ? "Work/Clients" : "Recipes").id);
        store_.setTags(store_.fetchHistory(2).back().id, {"garden", "letters"});
        for (const char* tag : {"garden", "letters"}) {
            model_.reset();
            model_.setFilter(scope::Tag{tag});
        }
        now_ = now_ + 300;
    }

    void settle() {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 500) {
            world_.run();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        }
    }

    /// Each form with nothing in it and with as much as anybody puts there.
    void drawForms() {
        ClipItem item;
        item.id = 1;
        item.text = "A letter";
        drawOrganize("organize-empty", item, OrganizeView::Field::tags, {});
        drawEdit("edit", item);
        item.text =
            "👩‍👩‍👧‍👦 🇩🇪 يولد جميع الناس أحرارًا متساوين في "
            "الكرامة\n\n" +
            std::string(5000, 'x');
        item.tags = {"receipts",       "سفر", "🧾", "a tag that goes on", "and on", "and then some more",
                     "until it is cut"};
        item.folderId =
            store_.folder("Work/Clients/Northern Lights GmbH/2026/🧾 سفر/the last of a long way down").id;
        drawOrganize("organize-full", item, OrganizeView::Field::pinboard, {"Organize Capture", "Skip"});
        drawEdit("edit-full", item);
        item.text.clear();
        drawEdit("edit-empty", item);
    }

    void drawOrganize(const char* name, const ClipItem& item, OrganizeView::Field focus,
                      const OrganizeView::Wording& wording) {
        tagPanel_.show(item, focus, {}, wording);
        drawLastPanel(name);
        tagPanel_.close();
    }

    void drawEdit(const char* name, const ClipItem& item) {
        editPanel_.show(item, {});
        drawLastPanel(name);
        editPanel_.close();
    }

    void drawLastPanel(const char* name) {
        const auto& record = *world_.panels().records().back();
        auto& window = *qobject_cast<QQuickView*>(record.window);
        window.resize(QSizeF(record.frame.width, record.frame.height).toSize());
        // No window manager gives this one the focus.
        QFocusEvent focus(QEvent::FocusIn);
        QCoreApplication::sendEvent(&window, &focus);
        save(window, name);
    }

    void draw(const char* name, int width) {
        constexpr int height = 280, shadow = 24;
        view_->resize(width + 2 * shadow, height + 2 * shadow);
        save(*view_, name);
    }

    void save(QQuickView& view, const char* name) {
        view.show();
        settle();
        QImage image = view.grabWindow();
        QImage desk(image.size(), QImage::Format_RGB32);
        desk.fill(QColor("#7A8CA0"));
        desk.setDevicePixelRatio(image.devicePixelRatio());
        QPainter(&desk).drawImage(0, 0, image);
        const auto path = output_ + QLatin1Char('/') + QString::fromUtf8(name) + suffixed_ + QStringLiteral(".png");
        if (!desk.save(path)) std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    }

    QString output_, suffix_, suffixed_;
    QTemporaryDir directory_;
    platform::World world_;
    NotificationCenter center_;
    Date now_ = world_.runLoop().now();
    ClipStore store_{directory_.path().toStdString(), center_, [this] { return now_; }};
    AppSettings settings_{world_.defaults(), nullptr, false};
    SilentHUD hud_;
    ViewHost host_{settings_, world_.appearance(), world_.panels()};
    PasteService pasteService_{{world_.pasteboard(), world_.workspace(), world_.accessibility(), world_.syntheticKeys(),
                                world_.runLoop(), hud_, center_, [](const std::string& text) { return text; }}};
    PickerModel model_{
        {store_, center_, world_.runLoop(), world_.defaults(), [] { return std::vector<std::int64_t>{}; }}};
    PickerActions actions_{{model_, store_, pasteService_, settings_, world_.workspace(), hud_,
                            [](const std::string& text) { return text; }}};
    StackManager stack_{store_, pasteService_, hud_, world_.defaults()};
    FormPanel::Environment forms_{host_, world_.screens(), world_.pasteboard(), world_.runLoop(),
                                  world_.eventMonitors()};
    TagPanelController tagPanel_{store_, forms_};
    EditPanelController editPanel_{store_, forms_};
    PickerPanelController controller_{
        {model_, actions_, world_, settings_, host_, center_, tagPanel_, editPanel_, stack_}};
    QQuickView* view_ = nullptr;
};

}  // namespace
}  // namespace brimquill

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: gallery DIRECTORY SUFFIX\n");
        return 2;
    }
    QFont font;
    font.setFamilies(
        {QStringLiteral("Noto Sans"), QStringLiteral("Noto Sans Math"), QStringLiteral("Noto Color Emoji")});
    QGuiApplication::setFont(font);
    QDir().mkpath(QString::fromUtf8(argv[1]));
    brimquill::Gallery(QString::fromUtf8(argv[1]), QString::fromUtf8(argv[2])).run();
    return 0;
}
