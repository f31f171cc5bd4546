// What the clipboard costs: from a program's claim to the snapshot on the main thread of another, both being ours, each
// with a thread and a connection of its own. Beside it what the server alone takes for a question and for the bytes.
#include "tests/platform/SelectionWorld.h"

#include <benchmark/benchmark.h>
#include <xcb/xcb.h>

#include <thread>

namespace brimquill::platform {
namespace {

constexpr std::size_t pictureSize = 20'000'000;
constexpr std::size_t chunk = 256 << 10;

/// The clients of one server.
class Pair {
public:
    Pair() : owner_(loop_, options()), reader_(loop_, options()) {}

    void hand(const PasteboardContents& contents) {
        const int before = reader_.changeCount();
        owner_.write(contents);
        while (reader_.changeCount() == before) {
            loop_.run();
            std::this_thread::yield();
        }
    }
    const X11Pasteboard& reader() const { return reader_; }

private:
    static X11PasteboardOptions options() {
        X11PasteboardOptions options;
        options.display = testing::XServer::shared().display();
        return options;
    }

    HeadlessRunLoop loop_;
    X11Pasteboard owner_, reader_;
};

void smallText(benchmark::State& state) {
    Pair pair;
    PasteboardContents contents;
    contents.string = "some words that somebody copied";
    for (auto _ : state)
        pair.hand(contents);
    if (pair.reader().string() != contents.string) state.SkipWithError("another text arrived");
}
BENCHMARK(smallText)->UseRealTime()->Unit(benchmark::kMicrosecond);

void picture(benchmark::State& state) {
    Pair pair;
    PasteboardContents contents;
    contents.png = std::make_shared<const Bytes>(testing::pattern(pictureSize));
    for (auto _ : state)
        pair.hand(contents);
    const SharedBytes arrived = pair.reader().data(pasteboard_type::png);
    if (!arrived || *arrived != *contents.png) state.SkipWithError("other bytes arrived");
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(pictureSize));
}
BENCHMARK(picture)->UseRealTime()->Unit(benchmark::kMillisecond);

void bareRoundTrip(benchmark::State& state) {
    xcb_connection_t* xcb = xcb_connect(testing::XServer::shared().display().c_str(), nullptr);
    for (auto _ : state)
        std::free(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    xcb_disconnect(xcb);
}
BENCHMARK(bareRoundTrip)->UseRealTime()->Unit(benchmark::kMicrosecond);

/// The picture's bytes into a property and out of it again, piece by piece, with nobody else taking part.
void barePicture(benchmark::State& state) {
    xcb_connection_t* xcb = xcb_connect(testing::XServer::shared().display().c_str(), nullptr);
    const xcb_window_t window = xcb_generate_id(xcb);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    const Bytes bytes = testing::pattern(pictureSize);
    for (auto _ : state) {
        for (std::size_t sent = 0; sent < bytes.size(); sent += chunk) {
            const auto length = static_cast<std::uint32_t>(std::min(chunk, bytes.size() - sent));
            xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_CUT_BUFFER0, XCB_ATOM_STRING, 8, length,
                                bytes.data() + sent);
            std::free(xcb_get_property_reply(
                xcb, xcb_get_property(xcb, 1, window, XCB_ATOM_CUT_BUFFER0, XCB_ATOM_STRING, 0, chunk / 4), nullptr));
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(pictureSize));
    xcb_disconnect(xcb);
}
BENCHMARK(barePicture)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace brimquill::platform
