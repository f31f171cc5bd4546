// The recogniser that is shipped, on pictures of every kind. Time is virtual; only the helper takes its own.

#include "Platform/Desktop/DesktopTextRecognizer.h"
#include "Platform/Headless/World.h"
#include "tests/platform/Desktop.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>
#include <csignal>
#include <cstring>

#include <array>
#include <fstream>
#include <string_view>
#include <utility>

namespace brimquill::platform {
namespace {

using testing::ElementsAre;

constexpr auto words = "quick brown fox";

/// Paints a line of text with its baseline at that point.
void write(QImage& image, const char* text, QPoint at, int pixelSize = 32) {
    QPainter painter(&image);
    QFont font(QStringLiteral("Noto Sans"));
    font.setPixelSize(pixelSize);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(at, QString::fromUtf8(text));
}

QImage blank(QSize size, QImage::Format format = QImage::Format_RGB32) {
    QImage image(size, format);
    image.fill(Qt::white);
    return image;
}

/// A QR code: 21 rows of 21 bits, the leftmost highest.
constexpr auto qrPayload = "brimquill-2041";
constexpr std::array<std::uint32_t, 21> qrRows = {0x1fc57f, 0x105541, 0x17565d, 0x17415d, 0x175d5d, 0x105c41, 0x1fd57f,
                                                  0x001000, 0x1a6776, 0x0f2979, 0x1a45e1, 0x1a104a, 0x04f701, 0x0019ed,
                                                  0x1fd336, 0x104283, 0x1741a0, 0x175f1f, 0x1745fd, 0x105f10, 0x1fdbd2};

void paintQrCode(QImage& image, QPoint at, int moduleSize) {
    QPainter painter(&image);
    for (int y = 0; y < 21; ++y) {
        for (int x = 0; x < 21; ++x) {
            if ((qrRows[static_cast<std::size_t>(y)] >> (20 - x) & 1U) == 0) continue;
            painter.fillRect(at.x() + x * moduleSize, at.y() + y * moduleSize, moduleSize, moduleSize, Qt::black);
        }
    }
}

/// A barcode of type Code 128: its bars from left to right.
constexpr auto barcodePayload = "BQ-2041";
constexpr std::string_view bars =
    "11010010000100010110001101000111010011011100101110111101100100111011000100010110111101101100011101011";

void paintBarcode(QImage& image, QPoint at, int barWidth, int height) {
    QPainter painter(&image);
    for (std::size_t index = 0; index < bars.size(); ++index) {
        if (bars[index] == '1')
            painter.fillRect(at.x() + static_cast<int>(index) * barWidth, at.y(), barWidth, height, Qt::black);
    }
}

std::uint32_t checksum(const QByteArray& bytes) {
    std::uint32_t sum = 0xFFFFFFFFU;
    for (const char byte : bytes) {
        sum ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~sum;
}

/// A PNG whose header promises 60,000 by 60,000 pixels.
QByteArray pngBomb(const QByteArray& png) {
    QByteArray bomb = png;
    bomb.replace(16, 8, QByteArray::fromHex("0000ea600000ea60"));
    const auto sum = checksum(bomb.sliced(12, 17));
    for (int index = 0; index < 4; ++index)
        bomb[29 + index] = static_cast<char>(sum >> (24 - 8 * index));
    return bomb;
}

class PictureReadingTest : public testing::Test {
protected:
    QString path(const QString& name) const { return directory_.filePath(name); }
    std::string save(const QImage& image, const QString& name) const {
        EXPECT_TRUE(image.save(path(name))) << name.toStdString();
        return path(name).toStdString();
    }
    std::string save(const QByteArray& bytes, const QString& name) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return path(name).toStdString();
    }
    static QByteArray contents(const std::string& file) {
        QFile opened(QString::fromStdString(file));
        EXPECT_TRUE(opened.open(QIODevice::ReadOnly));
        return opened.readAll();
    }
    std::string picture(const QString& name, const char* text = words) const {
        QImage image = blank({700, 90});
        write(image, text, {20, 56});
        return save(image, name);
    }
    /// A picture file of a format that Qt reads but does not write.
    std::string converted(const std::string& arguments, const QString& name) const {
        auto target = path(name).toStdString();
        EXPECT_EQ(runCommand("convert " + arguments + " " + target), 0);
        return target;
    }

    TextRecognizer::Result finish() {
        // A picture of many millions of pixels takes its time on a busy machine.
        const auto answered = [this] {
            world.advance(0);
            return answers > 0;
        };
        EXPECT_TRUE(eventually(answered) || eventually(answered) || eventually(answered));
        EXPECT_EQ(answers, 1);
        return result;
    }
    void begin(const std::string& file, QualityOfService qos = QualityOfService::userInitiated) {
        answers = 0;
        result = {};
        recognizer.recognize(file, qos, [this](TextRecognizer::Result given) {
            result = std::move(given);
            ++answers;
        });
    }
    TextRecognizer::Result read(const std::string& file, QualityOfService qos = QualityOfService::userInitiated) {
        begin(file, qos);
        return finish();
    }
    /// The process that reads, 0 when there is none.
    static int helper() {
        std::ifstream children("/proc/self/task/" + std::to_string(getpid()) + "/children");
        for (int child = 0; children >> child;) {
            std::string name;
            std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm"), name);
            if (name.starts_with("brimquill-recog")) return child;
        }
        return 0;
    }

    World world;
    DesktopTextRecognizer recognizer{world.runLoop(), {.helper = RECOGNIZER}};

private:
    int answers = 0;
    TextRecognizer::Result result;
    QTemporaryDir directory_;
};

TEST_F(PictureReadingTest, PayloadsAndLinesAreToldApartAndInReadingOrder) {
    QImage image = blank({900, 620});
    write(image, "The first line of all", {30, 60});
    write(image, "and then the second", {30, 120});
    paintQrCode(image, {60, 190}, 10);
    paintBarcode(image, {500, 220}, 3, 120);
    write(image, "below the codes a last one", {30, 520});
    const auto both = read(save(image, QStringLiteral("both.png")));
    EXPECT_THAT(both.codes, testing::UnorderedElementsAre(qrPayload, barcodePayload));
    ASSERT_GE(both.lines.size(), 3U);
    EXPECT_EQ(both.lines[0], "The first line of all");
    EXPECT_EQ(both.lines[1], "and then the second");
    EXPECT_EQ(both.lines.back(), "below the codes a last one");

    QImage twins = blank({900, 620});
    paintBarcode(twins, {40, 40}, 2, 100);
    paintBarcode(twins, {400, 300}, 4, 280);
    write(twins, "the same code twice", {30, 250});
    const auto twice = read(save(twins, QStringLiteral("twins.png")));
    EXPECT_THAT(twice.codes, ElementsAre(barcodePayload));
    EXPECT_THAT(twice.lines, testing::Contains("the same code twice"));

    QImage code = blank({300, 300});
    paintQrCode(code, {45, 45}, 10);
    EXPECT_THAT(read(save(code, QStringLiteral("code.png"))).codes, ElementsAre(qrPayload));
    EXPECT_EQ(read(save(blank({400, 300}), QStringLiteral("nothing.png"))), TextRecognizer::Result{});
}

TEST_F(PictureReadingTest, ReadsWhatScreensShow) {
    struct Case {
        const char* what;
        int pixelSize;
        bool isDark, isTransparent;
    };
    constexpr std::array cases = {Case{"large", 44, false, false}, Case{"small", 12, false, false},
                                  Case{"light on dark", 32, true, false}, Case{"small light on dark", 12, true, false},
                                  Case{"on no ground", 32, false, true}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        QImage image = blank({700, 90}, test.isTransparent ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        if (test.isTransparent) image.fill(Qt::transparent);
        write(image, "Please restart the server before noon", {10, 56}, std::min(test.pixelSize, 36));
        if (test.isDark) image.invertPixels();
        EXPECT_THAT(read(save(image, QStringLiteral("screen.png"))).lines,
                    ElementsAre("Please restart the server before noon"));
    }
}

TEST_F(PictureReadingTest, ReadsEveryFormatAndOutlivesWhatIsDamagedOfIt) {
    const auto png = picture(QStringLiteral("a.png"));
    const auto other = picture(QStringLiteral("other.png"), "a second frame");
    const std::vector<std::string> formats = {
        png,
        picture(QStringLiteral("b.jpg")),
        picture(QStringLiteral("c.tiff")),
        picture(QStringLiteral("d.webp")),
        picture(QStringLiteral("e.bmp")),
        converted(png + " " + other, QStringLiteral("f.gif")),
    };
    for (const auto& format : formats) {
        SCOPED_TRACE(format);
        EXPECT_THAT(read(format).lines, ElementsAre(words)) << "the first frame, if there are several";
        const QByteArray whole = contents(format);
        QByteArray stamped = whole;
        for (qsizetype at = 20; at < stamped.size(); at += 61)
            stamped[at] = static_cast<char>(at * 7);
        const int before = helper();
        EXPECT_EQ(read(save(QByteArray(), QStringLiteral("empty"))), TextRecognizer::Result{});
        EXPECT_EQ(read(save(whole.first(12), QStringLiteral("head"))), TextRecognizer::Result{});
        read(save(whole.first(whole.size() / 2), QStringLiteral("half")));
        read(save(stamped, QStringLiteral("stamped")));
        EXPECT_THAT(read(format).lines, ElementsAre(words)) << "after the damaged ones";
        EXPECT_EQ(helper(), before) << "none of them brought the helper down";
    }
    EXPECT_EQ(read(save(QByteArray("words"), QStringLiteral("no picture.png"))), TextRecognizer::Result{});
    EXPECT_EQ(read(path(QStringLiteral("missing.png")).toStdString()), TextRecognizer::Result{});
    EXPECT_EQ(read(path(QString()).toStdString()), TextRecognizer::Result{}) << "a folder";
}

TEST_F(PictureReadingTest, APictureOfFortyMegapixelsIsReadAndOneThatOnlyPromisesMoreIsNot) {
    QImage image = blank({8000, 5000});
    write(image, words, {200, 2000}, 240);
    EXPECT_THAT(read(save(image, QStringLiteral("large.jpg"))).lines, ElementsAre(words));
    const auto small = picture(QStringLiteral("small.png"));
    QByteArray gif = contents(converted(small, QStringLiteral("small.gif")));
    gif.replace(6, 4, QByteArray::fromHex("ffffffff"));
    EXPECT_EQ(read(save(pngBomb(contents(small)), QStringLiteral("bomb.png"))), TextRecognizer::Result{});
    EXPECT_EQ(read(save(gif, QStringLiteral("bomb.gif"))), TextRecognizer::Result{});
    EXPECT_THAT(read(small).lines, ElementsAre(words));
}

TEST_F(PictureReadingTest, APictureThatBringsTheHelperDownCostsOnlyItsOwnText) {
    const auto good = picture(QStringLiteral("good.png"));
    for (const int signal : {SIGKILL, SIGSEGV, SIGSTOP}) {
        SCOPED_TRACE(strsignal(signal));
        EXPECT_THAT(read(good).lines, ElementsAre(words));
        const int doomed = helper();
        ASSERT_NE(doomed, 0);
        ASSERT_EQ(kill(doomed, SIGSTOP), 0) << "so that it is in the middle of the picture";
        begin(good);
        if (signal == SIGSTOP) {
            world.advance(31);
        } else {
            kill(doomed, signal);
            kill(doomed, SIGCONT);
        }
        EXPECT_EQ(finish(), TextRecognizer::Result{});
        EXPECT_THAT(read(good).lines, ElementsAre(words));
        EXPECT_NE(helper(), doomed);
        EXPECT_TRUE(eventually([&] { return kill(doomed, 0) != 0; })) << "it is gone, and waited for";
    }
}

TEST_F(PictureReadingTest, OnlyPicturesThatNobodyWaitsForAreReadAtALowPriority) {
    const auto good = picture(QStringLiteral("good.png"));
    read(good);
    const int first = helper();
    const int usual = getpriority(PRIO_PROCESS, 0);
    EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(first)), usual);
    EXPECT_THAT(read(good, QualityOfService::utility).lines, ElementsAre(words));
    EXPECT_EQ(helper(), first);
    EXPECT_GT(getpriority(PRIO_PROCESS, static_cast<id_t>(first)), usual);
    EXPECT_THAT(read(good).lines, ElementsAre(words));
    EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(helper())), usual);
}

TEST_F(PictureReadingTest, AnIdleHelperGivesItsMemoryBack) {
    const auto good = picture(QStringLiteral("good.png"));
    read(good);
    const int reader = helper();
    ASSERT_NE(reader, 0);
    world.advance(29);
    EXPECT_EQ(helper(), reader) << "the next picture finds it ready";
    read(good);
    world.advance(29);
    EXPECT_EQ(helper(), reader) << "the time begins anew with each picture";
    world.advance(2);
    EXPECT_TRUE(eventually([&] { return kill(reader, 0) != 0; }));
    EXPECT_THAT(read(good).lines, ElementsAre(words));
}

}  // namespace
}  // namespace brimquill::platform
