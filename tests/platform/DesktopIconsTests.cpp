#include "Platform/Desktop/DesktopIcons.h"

#include <QDir>
#include <QIcon>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fstream>
#include <utility>

namespace brimquill::platform {
namespace {

/// A theme of the test's own on top of what the machine has, with one of a kind that inherits from itself.
class DesktopIconsTest : public testing::Test {
protected:
    DesktopIconsTest() {
        qputenv("XDG_DATA_HOME", home_.path().toLocal8Bit());
        describe("Mine",
                 "[Icon Theme]\nInherits=Parent,Nowhere\nDirectories=16x16/apps,48/mimes,big\n\n"
                 "[16x16/apps]\nSize=16\nType=Fixed\n\n[48/mimes]\nSize=48\n\n"
                 "[big]\nSize=128\nMinSize=64\nMaxSize=512\nType=Scalable\n");
        describe("Parent",
                 "[Icon Theme]\nInherits=Mine\nDirectories=24@2,32\n\n[24@2]\nSize=24\nScale=2\n\n[32]\nSize=32\n");
    }
    ~DesktopIconsTest() override {
        QIcon::setThemeName(themeBefore_);
        for (const auto& [name, value] : environmentBefore_)
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }

    void describe(const char* theme, const char* index) {
        const auto folder = home_.filePath(QStringLiteral("icons/") + QLatin1String(theme));
        QDir().mkpath(folder);
        std::ofstream(folder.toStdString() + "/index.theme") << index;
    }
    /// An icon that is told by its red.
    void add(const char* file, int edge, int red) {
        const QString path = home_.filePath(QStringLiteral("icons/") + QLatin1String(file));
        QDir().mkpath(QFileInfo(path).path());
        QImage image(edge, edge, QImage::Format_RGB32);
        image.fill(QColor(red, 0, 0));
        ASSERT_TRUE(image.save(path));
    }
    static int redOf(const std::optional<Image>& image) { return image ? image->rgba.at(0) : -1; }

    QTemporaryDir home_;

private:
    const QString themeBefore_ = QIcon::themeName();
    const std::pair<const char*, QByteArray> environmentBefore_[2] = {
        {"XDG_DATA_HOME", qgetenv("XDG_DATA_HOME")},
        {"XDG_DATA_DIRS", qgetenv("XDG_DATA_DIRS")},
    };
};

TEST_F(DesktopIconsTest, TheThemeThenItsParentsInTheSizeThatSuitsBest) {
    add("Mine/16x16/apps/brimquill-a.png", 16, 1);
    add("Mine/48/mimes/brimquill-a.png", 48, 2);
    add("Mine/big/brimquill-a.png", 128, 3);
    add("Parent/32/brimquill-a.png", 32, 4);
    add("Parent/32/brimquill-b.png", 32, 5);
    add("Parent/24@2/brimquill-b.png", 48, 6);
    add("hicolor/48x48/apps/brimquill-c.png", 48, 7);
    const struct {
        const char* name;
        int size, red;
    } cases[] = {
        {"brimquill-a", 16, 1},  {"brimquill-a", 20, 1}, {"brimquill-a", 40, 2},     {"brimquill-a", 60, 3},
        {"brimquill-a", 300, 3}, {"brimquill-b", 32, 5}, {"brimquill-b", 48, 6},     {"brimquill-c", 16, 7},
        {"brimquill-d", 16, -1}, {"", 16, -1},           {"../brimquill-a", 16, -1},
    };
    QIcon::setThemeName(QStringLiteral("Mine"));
    DesktopIcons icons;
    for (const auto& [name, size, red] : cases)
        EXPECT_EQ(redOf(icons.icon(name, size)), red) << name << " " << size;
    const auto scaled = icons.icon("brimquill-a", 40);
    ASSERT_TRUE(scaled);
    EXPECT_EQ(scaled->width, 40);
    EXPECT_EQ(redOf(icons.icon(home_.path().toStdString() + "/icons/Parent/32/brimquill-b.png", 16)), 5) << "a file";
}

TEST_F(DesktopIconsTest, AFileHasTheIconOfItsKind) {
    add("Mine/48/mimes/application-pdf.png", 48, 1);
    add("Mine/48/mimes/text-x-generic.png", 48, 2);
    add("Mine/48/mimes/inode-directory.png", 48, 3);
    add("Mine/48/mimes/package-x-generic.png", 48, 4);
    const struct {
        std::string path;
        int red;
    } cases[] = {
        {"/nowhere/Report.PDF", 1},      {"/nowhere/notes.txt", 2},     {"/nowhere/source.cpp", 2},
        {home_.path().toStdString(), 3}, {"/nowhere/backup.tar.gz", 4},
    };
    QIcon::setThemeName(QStringLiteral("Mine"));
    DesktopIcons icons;
    for (const auto& [path, red] : cases)
        EXPECT_EQ(redOf(icons.iconForFile(path, 40)), red) << path;
}

TEST_F(DesktopIconsTest, WithoutAnyThemeThereIsNoIcon) {
    qputenv("XDG_DATA_DIRS", home_.path().toLocal8Bit());
    QIcon::setThemeName(QStringLiteral("None"));
    DesktopIcons icons;
    EXPECT_EQ(redOf(icons.icon("brimquill-a", 16)), -1);
    EXPECT_EQ(redOf(icons.iconForFile("/nowhere/notes.txt", 16)), -1);
}

}  // namespace
}  // namespace brimquill::platform
