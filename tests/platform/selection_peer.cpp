// The program at the other end of the clipboard, in tests: an owner that can be told to misbehave, or a requestor.
//
//   selection_peer own [--selection NAME] [--offer TARGET=TEXT]... [--offer-file TARGET=PATH]...
//                      [--offer-pattern TARGET=BYTES]... [--chunk BYTES] [--do BEHAVIOUR[@TARGET]]
//                      [--changes COUNT --every MILLISECONDS] [--save TARGETS]
//     Owns the selection (CLIPBOARD) and prints "owned" for each claim, "served TARGET" or "refused TARGET" for each
//     request, and "lost" when somebody else takes the selection; then it ends once the transfers under way are done.
//     Values longer than --chunk (64 KiB) go out by INCR. A pattern is `BYTES` bytes, the i-th being (i * 31 + i / 251)
//     modulo 256. BEHAVIOUR, for requests of TARGET or of everything:
//       hang      does not answer               refuse    refuses
//       die       exits after the first piece    huge      announces 4 GiB before it sends the value by INCR
//       endless   sends pieces for ever          trickle   sends one byte every 20 ms for ever
//       reown     claims anew at each request    change    claims anew once, offering the text "after" alone, and then
//                                                          answers the request with what it had before
//       hasty     puts each piece of a transfer twice, where an owner should wait until it was taken
//       many      lists 2000 more targets, which it refuses
//     With --save it does at SIGTERM what programs do that quit: it has the clipboard manager save those of its targets
//     (names with "," between, or "all" without a list), serves what is asked of it meanwhile, prints "saved", "not
//     saved" or "no manager" and ends.
//     With --changes it claims COUNT times, offering the texts "change 1" and so on, `MILLISECONDS` apart, each once
//     the text before was asked for.
//
//   selection_peer get TARGET [--selection NAME] [--die-after BYTES] [--hang]
//     Asks for the selection and writes the value to standard output. Status 1 when it was refused, 3 when nothing came
//     for ten seconds. --die-after leaves in the middle of a transfer with status 0; --hang asks and takes nothing,
//     prints "hanging" and waits to be killed. TARGET may be several names with "," between: then they are asked for
//     together (MULTIPLE), and each small value, or "refused", is written on a line of its own.
#include <xcb/xcb.h>

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Bytes = std::vector<std::uint8_t>;

struct Options {
    std::string selection = "CLIPBOARD", target, behaviour, behaviourTarget;
    std::map<std::string, Bytes> offers;
    std::size_t chunk = 64 << 10;
    std::optional<std::string> save;
    int changes = 0;
    std::chrono::milliseconds every{0};
    std::optional<std::size_t> dieAfter;
    bool hangs = false;
};

volatile std::sig_atomic_t isTerminated = 0;

void say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

class Display {
public:
    Display() : xcb_(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(xcb_)) std::exit(2);
        window_ = xcb_generate_id(xcb_);
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data->root;
        xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window_, root, -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    }
    ~Display() {
        // Who asked just before waits for the answer for ever if it goes with us.
        finishRequests();
        xcb_disconnect(xcb_);
    }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    xcb_connection_t* xcb() const { return xcb_; }
    xcb_window_t window() const { return window_; }

    xcb_atom_t atom(const std::string& name) const {
        auto* reply = xcb_intern_atom_reply(
            xcb_, xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
        const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return atom;
    }

    /// Of names with "," between.
    std::vector<xcb_atom_t> atoms(const std::string& names) const {
        std::vector<xcb_atom_t> atoms;
        for (std::size_t begin = 0; begin <= names.size();) {
            const std::size_t end = std::min(names.find(',', begin), names.size());
            atoms.push_back(atom(names.substr(begin, end - begin)));
            begin = end + 1;
        }
        return atoms;
    }

    std::string name(xcb_atom_t atom) const {
        auto* reply = xcb_get_atom_name_reply(xcb_, xcb_get_atom_name(xcb_, atom), nullptr);
        std::string name =
            reply ? std::string(xcb_get_atom_name_name(reply), xcb_get_atom_name_name_length(reply)) : "?";
        std::free(reply);
        return name;
    }

    /// Waits until the server has done all that was asked of it.
    void finishRequests() const { std::free(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr)); }

    /// The next event, or nothing once `timeout` milliseconds have passed.
    std::unique_ptr<xcb_generic_event_t, void (*)(void*)> nextEvent(int timeout) const {
        xcb_flush(xcb_);
        xcb_generic_event_t* event = xcb_poll_for_event(xcb_);
        if (!event && !xcb_connection_has_error(xcb_)) {
            pollfd waited{xcb_get_file_descriptor(xcb_), POLLIN, 0};
            poll(&waited, 1, timeout);
            event = xcb_poll_for_event(xcb_);
        }
        if (xcb_connection_has_error(xcb_)) std::exit(2);
        return {event, std::free};
    }

private:
    xcb_connection_t* xcb_;
    xcb_window_t window_ = XCB_NONE;
};

class Owner {
public:
    explicit Owner(Options options) : options_(std::move(options)), selection_(display_.atom(options_.selection)) {}

    int run() {
        if (options_.save) std::signal(SIGTERM, [](int) { isTerminated = 1; });
        if (options_.changes == 0) claim();
        for (;;) {
            changeWhenDue();
            if (isTerminated && !saving_ && !startSave()) return 0;
            const bool isPaced = options_.changes > 0 || !trickles_.empty() || options_.save;
            const auto event = display_.nextEvent(isPaced ? 2 : 1000);
            if (event) handle(*event);
            trickle();
            if ((lost_ || saved_) && transfers_.empty()) return 0;
        }
    }

private:
    struct Transfer {
        xcb_atom_t type;
        Bytes value;
        std::size_t sent = 0;
        bool isEndless = false, dies = false, isHasty = false;
    };
    using Key = std::pair<xcb_window_t, xcb_atom_t>;

    /// False when there is no manager to save anything.
    bool startSave() {
        saving_ = true;
        const xcb_atom_t manager = display_.atom("CLIPBOARD_MANAGER"), property = display_.atom("PEER_SAVE");
        auto* owner =
            xcb_get_selection_owner_reply(display_.xcb(), xcb_get_selection_owner(display_.xcb(), manager), nullptr);
        const bool hasManager = owner && owner->owner != XCB_NONE;
        std::free(owner);
        if (!hasManager) {
            say("no manager");
            return false;
        }
        const std::vector<xcb_atom_t> targets =
            *options_.save == "all" ? std::vector<xcb_atom_t>() : display_.atoms(*options_.save);
        xcb_change_property(display_.xcb(), XCB_PROP_MODE_REPLACE, display_.window(), property, XCB_ATOM_ATOM, 32,
                            static_cast<std::uint32_t>(targets.size()), targets.data());
        xcb_convert_selection(display_.xcb(), display_.window(), manager, display_.atom("SAVE_TARGETS"), property,
                              XCB_CURRENT_TIME);
        return true;
    }

    void claim() {
        xcb_set_selection_owner(display_.xcb(), display_.window(), selection_, XCB_CURRENT_TIME);
        display_.finishRequests();
        say("owned");
    }

    void changeWhenDue() {
        const bool due = changed_ < options_.changes && wasRead_ && Clock::now() >= nextChange_;
        if (!due) return;
        const std::string text = "change " + std::to_string(++changed_);
        options_.offers = {{"UTF8_STRING", Bytes(text.begin(), text.end())}};
        wasRead_ = false;
        nextChange_ = Clock::now() + options_.every;
        claim();
    }

    void handle(const xcb_generic_event_t& event) {
        switch (event.response_type & 0x7f) {
            case XCB_SELECTION_REQUEST:
                answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
                break;
            case XCB_SELECTION_CLEAR:
                lost_ = true;
                say("lost");
                break;
            case XCB_SELECTION_NOTIFY:
                saved_ = true;
                say(reinterpret_cast<const xcb_selection_notify_event_t&>(event).property == XCB_ATOM_NONE ? "not saved"
                                                                                                           : "saved");
                break;
            case XCB_PROPERTY_NOTIFY:
                sendPiece(reinterpret_cast<const xcb_property_notify_event_t&>(event));
                break;
            default:
                break;
        }
    }

    void answer(const xcb_selection_request_event_t& request) {
        const std::string target = display_.name(request.target);
        const bool applies = options_.behaviourTarget.empty() || options_.behaviourTarget == target;
        const std::string behaviour = applies ? options_.behaviour : "";
        if (behaviour == "hang") return say("hung at " + target);
        if (behaviour == "reown") claim();
        const auto before = options_.offers;
        if (behaviour == "change" && !std::exchange(hasChanged_, true)) {
            options_.offers = {{"UTF8_STRING", Bytes{'a', 'f', 't', 'e', 'r'}}};
            claim();
        }
        const bool served = behaviour != "refuse" && put(request, target, behaviour, before);
        notify(request, served);
        wasRead_ = wasRead_ || target == "UTF8_STRING";
        say((served ? "served " : "refused ") + target);
    }

    bool put(const xcb_selection_request_event_t& request, const std::string& target, const std::string& behaviour,
             const std::map<std::string, Bytes>& offers) {
        if (target == "TARGETS") {
            putTargets(request, behaviour == "many", offers);
            return true;
        }
        const auto offer = offers.find(target);
        if (offer == offers.end()) return false;
        const bool isEndless = behaviour == "endless", trickles = behaviour == "trickle";
        const bool isOdd = isEndless || trickles || behaviour == "huge" || behaviour == "die" || behaviour == "hasty";
        if (offer->second.size() <= options_.chunk && !isOdd) {
            xcb_change_property(display_.xcb(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                request.target, 8, static_cast<std::uint32_t>(offer->second.size()),
                                offer->second.data());
            return true;
        }
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(display_.xcb(), request.requestor, XCB_CW_EVENT_MASK, &events);
        const std::uint32_t size = behaviour == "huge" ? UINT32_MAX : static_cast<std::uint32_t>(offer->second.size());
        xcb_change_property(display_.xcb(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            display_.atom("INCR"), 32, 1, &size);
        Transfer transfer{request.target, offer->second, 0, isEndless, behaviour == "die", behaviour == "hasty"};
        if (trickles)
            trickles_[{request.requestor, request.property}] = request.target;
        else
            transfers_[{request.requestor, request.property}] = std::move(transfer);
        return true;
    }

    void putTargets(const xcb_selection_request_event_t& request, bool isMany,
                    const std::map<std::string, Bytes>& offers) {
        std::vector<xcb_atom_t> atoms = {display_.atom("TARGETS")};
        for (int i = 0; isMany && i < 2000; ++i)
            atoms.push_back(display_.atom("application/x-peer-" + std::to_string(i)));
        for (const auto& [name, value] : offers)
            atoms.push_back(display_.atom(name));
        xcb_change_property(display_.xcb(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, XCB_ATOM_ATOM,
                            32, static_cast<std::uint32_t>(atoms.size()), atoms.data());
    }

    void notify(const xcb_selection_request_event_t& request, bool served) {
        char event[32] = {};
        xcb_selection_notify_event_t answer{};
        answer.response_type = XCB_SELECTION_NOTIFY;
        answer.time = request.time;
        answer.requestor = request.requestor;
        answer.selection = request.selection;
        answer.target = request.target;
        answer.property = served ? request.property : xcb_atom_t{XCB_ATOM_NONE};
        std::memcpy(event, &answer, sizeof answer);
        xcb_send_event(display_.xcb(), 0, request.requestor, 0, event);
        xcb_flush(display_.xcb());
    }

    void sendPiece(const xcb_property_notify_event_t& event) {
        const auto found = transfers_.find({event.window, event.atom});
        if (found == transfers_.end() || event.state != XCB_PROPERTY_DELETE) return;
        Transfer& transfer = found->second;
        const std::size_t length =
            transfer.isEndless ? options_.chunk : std::min(options_.chunk, transfer.value.size() - transfer.sent);
        const Bytes piece(transfer.isEndless ? Bytes(length, 'x')
                                             : Bytes(transfer.value.data() + transfer.sent,
                                                     transfer.value.data() + transfer.sent + length));
        for (int time = 0; time < (transfer.isHasty ? 2 : 1); ++time)
            xcb_change_property(display_.xcb(), XCB_PROP_MODE_REPLACE, event.window, event.atom, transfer.type, 8,
                                static_cast<std::uint32_t>(length), piece.data());
        xcb_flush(display_.xcb());
        transfer.sent += length;
        if (transfer.dies) std::_Exit(0);
        if (length == 0) transfers_.erase(found);
    }

    void trickle() {
        if (Clock::now() < nextTrickle_) return;
        nextTrickle_ = Clock::now() + std::chrono::milliseconds(20);
        for (const auto& [key, type] : trickles_)
            xcb_change_property(display_.xcb(), XCB_PROP_MODE_REPLACE, key.first, key.second, type, 8, 1, "x");
        xcb_flush(display_.xcb());
    }

    Options options_;
    Display display_;
    xcb_atom_t selection_;
    std::map<Key, Transfer> transfers_;
    std::map<Key, xcb_atom_t> trickles_;
    bool lost_ = false, hasChanged_ = false, wasRead_ = true, saving_ = false, saved_ = false;
    int changed_ = 0;
    Clock::time_point nextChange_ = Clock::now(), nextTrickle_ = Clock::now();
};

class Requestor {
public:
    explicit Requestor(Options options) : options_(std::move(options)), property_(display_.atom("PEER_VALUE")) {}

    int run() {
        if (options_.target.find(',') != std::string::npos) return runMultiple();
        ask(options_.target, property_);
        for (;;) {
            const auto event = display_.nextEvent(10'000);
            if (!event) return 3;
            const int type = event->response_type & 0x7f;
            if (type == XCB_SELECTION_NOTIFY) {
                if (reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property == XCB_ATOM_NONE) return 1;
                if (options_.hangs) hang();
                if (takeProperty()) return finish();
            } else if (type == XCB_PROPERTY_NOTIFY && incremental_) {
                const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
                if (change.atom != property_ || change.state != XCB_PROPERTY_NEW_VALUE) continue;
                if (takeProperty()) return finish();
                if (options_.dieAfter && value_.size() >= *options_.dieAfter) return 0;
            }
        }
    }

private:
    void ask(const std::string& target, xcb_atom_t property) {
        xcb_convert_selection(display_.xcb(), display_.window(), display_.atom(options_.selection),
                              display_.atom(target), property, XCB_CURRENT_TIME);
    }

    int runMultiple() {
        std::vector<xcb_atom_t> pairs;
        for (const xcb_atom_t target : display_.atoms(options_.target)) {
            pairs.push_back(target);
            pairs.push_back(display_.atom("PEER_VALUE_" + std::to_string(pairs.size())));
        }
        xcb_change_property(display_.xcb(), XCB_PROP_MODE_REPLACE, display_.window(), property_,
                            display_.atom("ATOM_PAIR"), 32, static_cast<std::uint32_t>(pairs.size()), pairs.data());
        ask("MULTIPLE", property_);
        for (;;) {
            const auto event = display_.nextEvent(10'000);
            if (!event) return 3;
            if ((event->response_type & 0x7f) != XCB_SELECTION_NOTIFY) continue;
            if (reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property == XCB_ATOM_NONE) return 1;
            break;
        }
        takeProperty();
        std::memcpy(pairs.data(), value_.data(), std::min(value_.size(), pairs.size() * sizeof pairs[0]));
        for (std::size_t i = 1; i < pairs.size(); i += 2) {
            value_.clear();
            property_ = pairs[i];
            if (property_ != XCB_ATOM_NONE) takeProperty();
            say(property_ == XCB_ATOM_NONE ? "refused" : std::string(value_.begin(), value_.end()));
        }
        return 0;
    }

    [[noreturn]] static void hang() {
        say("hanging");
        for (;;)
            pause();
    }

    /// Whether the value is complete.
    bool takeProperty() {
        auto* reply = xcb_get_property_reply(
            display_.xcb(),
            xcb_get_property(display_.xcb(), 1, display_.window(), property_, XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 28),
            nullptr);
        if (!reply) return true;
        const int length = xcb_get_property_value_length(reply);
        const auto* bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply));
        const bool begins = !incremental_ && reply->type == display_.atom("INCR");
        if (!begins) value_.insert(value_.end(), bytes, bytes + length);
        std::free(reply);
        if (begins) incremental_ = true;
        return !begins && (!incremental_ || length == 0);
    }

    int finish() const {
        if (!value_.empty()) std::fwrite(value_.data(), 1, value_.size(), stdout);
        return 0;
    }

    Options options_;
    Display display_;
    xcb_atom_t property_;
    bool incremental_ = false;
    Bytes value_;
};

Bytes pattern(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 31 + i / 251);
    return bytes;
}

Options parse(const std::vector<std::string>& words) {
    Options options;
    std::size_t next = 1;
    if (words[0] == "get" && words.size() > 1) options.target = words[next++];
    while (next < words.size()) {
        const std::string& option = words[next++];
        if (option == "--hang") {
            options.hangs = true;
            continue;
        }
        if (next == words.size()) std::exit(64);
        const std::string& value = words[next++];
        const std::size_t equals = value.find('='), at = value.find('@');
        const std::string name = value.substr(0, value.rfind('=')), rest = value.substr(value.rfind('=') + 1);
        if (option == "--selection") options.selection = value;
        if (option == "--save") options.save = value;
        if (option == "--chunk") options.chunk = std::stoul(value);
        if (option == "--changes") options.changes = std::stoi(value);
        if (option == "--every") options.every = std::chrono::milliseconds(std::stol(value));
        if (option == "--die-after") options.dieAfter = std::stoul(value);
        if (option == "--do") options.behaviour = value.substr(0, at);
        if (option == "--do" && at != std::string::npos) options.behaviourTarget = value.substr(at + 1);
        if (option == "--offer-pattern") options.offers[name] = pattern(std::stoul(rest));
        if (option == "--offer") {
            // The charset of a target has an equals sign of its own.
            const bool hasCharset = value.starts_with("text/plain;charset=") && equals != std::string::npos;
            const std::size_t split = hasCharset ? value.find('=', equals + 1) : equals;
            options.offers[value.substr(0, split)] = Bytes(value.begin() + static_cast<long>(split) + 1, value.end());
        }
        if (option == "--offer-file") {
            std::ifstream file(rest, std::ios::binary);
            options.offers[name] = Bytes(std::istreambuf_iterator<char>(file), {});
        }
    }
    return options;
}

}  // namespace

int main(int count, char** words) {
    const std::vector<std::string> arguments(words + 1, words + count);
    if (!arguments.empty() && arguments[0] == "own") return Owner(parse(arguments)).run();
    if (arguments.size() > 1 && arguments[0] == "get") return Requestor(parse(arguments)).run();
    std::fputs("usage: selection_peer own|get ...\n", stderr);
    return 64;
}
