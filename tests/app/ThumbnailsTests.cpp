#include "Brimquill/Palette/Thumbnails.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace brimquill {
namespace {

using Fit = Thumbnails::Fit;

class ThumbnailsTest : public testing::Test {
protected:
    /// A picture whose left half is red and whose right half is blue.
    QString picture(QSize size, const char* format) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::blue);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width() / 2; ++x)
                image.setPixelColor(x, y, Qt::red);
        }
        auto path = directory_.filePath(QStringLiteral("picture.") + QLatin1String(format));
        EXPECT_TRUE(image.save(path, format));
        return path;
    }

    QTemporaryDir directory_;
};

TEST_F(ThumbnailsTest, CoversItsPlaceOrShowsTheWholeAndIsNeverEnlarged) {
    const struct {
        QSize picture, place;
        Fit fit;
        QSize result;
    } cases[] = {
        {{800, 600}, {178, 138}, Fit::cover, {178, 138}},  {{800, 600}, {180, 138}, Fit::whole, {180, 135}},
        {{100, 2000}, {178, 138}, Fit::cover, {100, 138}}, {{100, 2000}, {640, 400}, Fit::whole, {20, 400}},
        {{4000, 20}, {178, 138}, Fit::cover, {178, 20}},   {{4000, 20}, {640, 400}, Fit::whole, {640, 3}},
        {{16, 16}, {178, 138}, Fit::cover, {16, 16}},      {{16, 16}, {640, 400}, Fit::whole, {16, 16}},
    };
    for (const char* format : {"png", "jpg", "bmp"}) {
        for (const auto& [size, place, fit, result] : cases) {
            const auto image = Thumbnails::read(picture(size, format), place, fit);
            EXPECT_EQ(image.size(), result) << format << " " << size.width() << "x" << size.height();
            if (fit == Fit::cover || image.isNull()) continue;
            EXPECT_GT(image.pixelColor(0, image.height() / 2).red(), 200) << "the left end is missing";
            EXPECT_GT(image.pixelColor(image.width() - 1, image.height() / 2).blue(), 200)
                << "the right end is missing";
        }
    }
}

TEST_F(ThumbnailsTest, APhotographIsTurnedBeforeItIsFitted) {
    const auto path = picture({400, 300}, "jpg");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    auto bytes = file.readAll();
    // What a camera writes that was held upright: to be turned by a quarter.
    bytes.insert(2, QByteArray::fromHex("ffe1002245786966000049492a0008000000010012010300010000000600000000000000"));
    file.seek(0);
    file.write(bytes);
    file.close();
    EXPECT_EQ(Thumbnails::read(path, {178, 138}, Fit::cover).size(), QSize(178, 138));
    EXPECT_EQ(Thumbnails::read(path, {178, 138}, Fit::whole).size(), QSize(103, 138));
    EXPECT_EQ(uprightSize(QImageReader(path)), QSize(300, 400)) << "what its card says";
}

TEST_F(ThumbnailsTest, WhatCannotBeReadIsNoPicture) {
    const auto damaged = picture({300, 300}, "png");
    QFile file(damaged);
    ASSERT_TRUE(file.resize(20));
    EXPECT_TRUE(Thumbnails::read(damaged, {178, 138}, Fit::cover).isNull());
    EXPECT_TRUE(Thumbnails::read(directory_.filePath(QStringLiteral("missing.png")), {178, 138}, Fit::whole).isNull());
}

TEST_F(ThumbnailsTest, ANameIsOnePieceOfItsAddress) {
    EXPECT_EQ(imageUrl(Thumbnails::wholeProvider, "/a b/ü%2F#?.png"),
              QStringLiteral("image://pictures/%2Fa%20b%2F%C3%BC%252F%23%3F.png"));
    EXPECT_EQ(imageUrl(Thumbnails::coverProvider, ""), QString());
}

}  // namespace
}  // namespace brimquill
