#include "Platform/X11/X11RawInput.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Desktop/Uptime.h"

#include <xcb/xinput.h>
#define explicit explicit_  // the name of a field in the next header
#include <xcb/xkb.h>
#undef explicit

#include <algorithm>
#include <string_view>

namespace brimquill::platform {

X11RawInput::X11RawInput(X11InjectedKeys& injected) : injected_(injected) {
    if (!connection_.isAlive() || !selectInput()) return;
    selectKeyboardChanges();
    findSyntheticKeyboard();
    connection_.sync();
    notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.xcb()), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { drain(); });
    injected_.setObserved(true);
    drain();  // the answers above may have brought events along
}

X11RawInput::~X11RawInput() {
    injected_.setObserved(false);
}

bool X11RawInput::selectInput() {
    xcb_connection_t* xcb = connection_.xcb();
    const auto* extension = xcb_get_extension_data(xcb, &xcb_input_id);
    if (extension == nullptr || extension->present == 0) return false;
    inputOpcode_ = extension->major_opcode;
    // Raw events come during other clients' grabs only to those who know version 2.2.
    const X11Reply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 2), nullptr));
    if (!version || version->major_version < 2 || (version->major_version == 2 && version->minor_version < 2)) {
        return false;
    }
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE |
                    XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
    xcb_input_xi_select_events(xcb, connection_.root(), 1, &selection.head);
    return true;
}

void X11RawInput::selectKeyboardChanges() {
    xcb_connection_t* xcb = connection_.xcb();
    const auto* extension = xcb_get_extension_data(xcb, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) return;
    const X11Reply<xcb_xkb_use_extension_reply_t> use(
        xcb_xkb_use_extension_reply(xcb, xcb_xkb_use_extension(xcb, 1, 0), nullptr));
    if (!use || use->supported == 0) return;
    keyboardEvent_ = extension->first_event;
    constexpr std::uint16_t events =
        XCB_XKB_EVENT_TYPE_STATE_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY;
    constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                       XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
    constexpr std::uint16_t core = XCB_XKB_ID_USE_CORE_KBD;
    xcb_xkb_select_events(xcb, core, events, 0, events, mapParts, mapParts, nullptr);
    const X11Reply<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(xcb, xcb_xkb_get_state(xcb, core), nullptr));
    if (!state) return;
    lockedMask_ = state->lockedMods | state->latchedMods;
    group_ = state->group;
}

void X11RawInput::findSyntheticKeyboard() {
    xcb_connection_t* xcb = connection_.xcb();
    const X11Reply<xcb_input_xi_query_device_reply_t> reply(
        xcb_input_xi_query_device_reply(xcb, xcb_input_xi_query_device(xcb, XCB_INPUT_DEVICE_ALL), nullptr));
    if (!reply) return;
    auto devices = xcb_input_xi_query_device_infos_iterator(reply.get());
    for (; devices.rem > 0; xcb_input_xi_device_info_next(&devices)) {
        const std::string_view name(xcb_input_xi_device_info_name(devices.data), devices.data->name_len);
        if (name.ends_with("XTEST keyboard")) syntheticKeyboard_ = devices.data->deviceid;
    }
}

void X11RawInput::catchUp() {
    if (!isAvailable()) return;
    connection_.sync();
    drain();
}

void X11RawInput::drain() {
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.xcb())})
        handle(*event);
    if (std::exchange(mappingChanged_, false)) mappings_.callAll();
    if (!connection_.isAlive() && notifier_ != nullptr && notifier_->isEnabled()) {
        notifier_->setEnabled(false);
        log::write("keys are no longer observed: the connection to the display was lost");
    }
}

void X11RawInput::handle(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7f;
    if (type == XCB_GE_GENERIC) {
        const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
        if (generic.extension == inputOpcode_) handleRaw(generic);
    } else if (type == XCB_MAPPING_NOTIFY) {
        mappingChanged_ = true;
    } else if (keyboardEvent_ != 0 && type == keyboardEvent_) {
        handleKeyboard(event);
    }
}

void X11RawInput::handleKeyboard(const xcb_generic_event_t& event) {
    // The kind stands where the core protocol has the detail.
    if (event.pad0 != XCB_XKB_STATE_NOTIFY) {
        mappingChanged_ = true;
        return;
    }
    const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    lockedMask_ = state.lockedMods | state.latchedMods;
    group_ = state.group;
}

void X11RawInput::handleRaw(const xcb_ge_generic_event_t& event) {
    Input input;
    switch (event.event_type) {
        case XCB_INPUT_RAW_KEY_PRESS:
            input.kind = Input::Kind::keyPress;
            break;
        case XCB_INPUT_RAW_KEY_RELEASE:
            input.kind = Input::Kind::keyRelease;
            break;
        case XCB_INPUT_RAW_BUTTON_PRESS:
            input.kind = Input::Kind::buttonPress;
            break;
        default:
            return;
    }
    // Raw buttons have the same beginning as raw keys.
    const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
    input.detail = static_cast<std::uint8_t>(raw.detail);
    input.uptime = uptimeOf(raw.time);
    input.serverTime = raw.time;
    const bool isSynthetic = raw.sourceid == syntheticKeyboard_;
    if (input.kind == Input::Kind::keyPress && isSynthetic && injected_.takeOwn(input.detail)) return;
    inputs_.callAll(input);
}

/// The server counts milliseconds from some start; the smallest difference seen is the best guess of it.
double X11RawInput::uptimeOf(std::uint32_t serverTime) {
    const double now = uptime();
    const double offset = now - serverTime / 1000.0;
    constexpr double wrapped = 60;  // the server's count began anew, or the machine slept
    if (!hasClockOffset_ || offset < clockOffset_ || offset > clockOffset_ + wrapped) clockOffset_ = offset;
    hasClockOffset_ = true;
    return serverTime / 1000.0 + clockOffset_;
}

}  // namespace brimquill::platform
