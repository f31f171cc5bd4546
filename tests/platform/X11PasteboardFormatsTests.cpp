#include "Platform/X11/X11PasteboardFormats.h"

#include <gmock/gmock.h>

namespace brimquill::platform::x11_formats {
namespace {

using namespace std::string_literals;

TEST(X11PasteboardFormats, DecodesFileLists) {
    const struct {
        std::string list;
        std::vector<std::string> paths;
    } cases[] = {
        {"file:///a\r\nfile:///b\r\n", {"/a", "/b"}},
        {"file:///a\nfile:///b", {"/a", "/b"}},
        {"copy\nfile:///a", {"/a"}},
        {"cut\nfile:///a\0"s, {"/a"}},
        {"# comment\r\nFILE:///a", {"/a"}},
        {"file:/a", {"/a"}},
        {"file://localhost/a", {"/a"}},
        {"file://elsewhere.example/a\nfile:///b", {"/b"}},
        {"https://example.com/a\nfile:///b", {"/b"}},
        {"file:///%E2%82%AC%20%25", {"/€ %"}},
        {"file:///a%2\nfile:///b%zz\nfile:///c%00d\nfile:///e%", {}},
        {"file:relative\nfile://\nfile:\nfile", {}},
        {"", {}},
        {"\r\n\0\0\n"s, {}},
    };
    for (const auto& [list, paths] : cases)
        EXPECT_EQ(decodeFileList(bytes(list)), paths) << list;
}

TEST(X11PasteboardFormats, FileUrlsComeBackAsTheirPaths) {
    std::string every = "/";
    for (int code = 1; code < 256; ++code)
        every += static_cast<char>(code);
    const std::string url = fileUrl(every);
    EXPECT_THAT(decodeFileList(bytes(url)), ::testing::ElementsAre(every));
    for (const char character : url)
        EXPECT_TRUE(character > ' ' && character < 0x7f) << static_cast<int>(character);
}

TEST(X11PasteboardFormats, DecodesTextByItsTarget) {
    const struct {
        std::string target, value, text;
    } cases[] = {
        {"UTF8_STRING", "Grüße", "Grüße"},
        {"UTF8_STRING", "Gr\xFC", "Gr\uFFFD"},
        {"UTF8_STRING", "ended\0"s, "ended"},
        {"UTF8_STRING", "in\0side"s, "in\0side"s},
        {"STRING",
         "Gr\xFC\xDF"
         "e",
         "Grüße"},
        {"STRING", "ü", "Ã¼"},
        {"text/plain", "Grüße", "Grüße"},
        {"text/plain",
         "Gr\xFC\xDF"
         "e",
         "Grüße"},
        {"text/plain", "", ""},
    };
    for (const auto& [target, value, text] : cases)
        EXPECT_EQ(decodeText(target, bytes(value)), text) << target << ": " << value;
}

TEST(X11PasteboardFormats, Latin1ReplacesWhatItLacks) {
    EXPECT_EQ(latin1("aÿ€😀\n"), bytes("a\xFF??\n"));
    EXPECT_EQ(latin1("cut \xC3"), bytes("cut ?"));
}

TEST(X11PasteboardFormats, OnlyTheHintOfASecretIsOne) {
    for (const auto& value : {"secret"s, "secret\0"s, "secret\n"s})
        EXPECT_TRUE(isSecretHint(bytes(value))) << value;
    for (const auto& value : {""s, "public"s, "secrets"s})
        EXPECT_FALSE(isSecretHint(bytes(value))) << value;
}

}  // namespace
}  // namespace brimquill::platform::x11_formats
