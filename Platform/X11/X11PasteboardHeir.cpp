#include "Platform/X11/X11PasteboardHeir.h"

#include "Platform/X11/X11PasteboardFormats.h"

#include <algorithm>
#include <map>
#include <utility>

namespace brimquill::platform {

using Outcome = X11SelectionTransfer::Outcome;

namespace {

// More programs than ever quit together, and more forms than any keeps for another program.
constexpr std::size_t mostSaves = 16;
constexpr std::uint32_t mostListedTargets = 256;
constexpr std::size_t mostFurtherTargets = 64;

std::string nameOf(xcb_connection_t* xcb, xcb_get_atom_name_cookie_t cookie) {
    const XcbOwned<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(xcb, cookie, nullptr));
    if (!reply) return {};
    return {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

}  // namespace

X11PasteboardHeir::X11PasteboardHeir(X11PasteboardConnection& connection, X11SelectionTransfer& transfer,
                                     X11SelectionOffer& offer, std::function<void()> lost)
    : connection_(connection),
      transfer_(transfer),
      offer_(offer),
      lost_(std::move(lost)),
      clipboard_(connection.alive() ? connection.atom("CLIPBOARD") : xcb_atom_t{XCB_ATOM_NONE}) {}

void X11PasteboardHeir::await() {
    forget();
    state_ = State::awaited;
}

void X11PasteboardHeir::hold(Snapshot snapshot, std::vector<xcb_atom_t> targets, xcb_timestamp_t time) {
    state_ = State::undecided;
    snapshot_ = std::move(snapshot);
    targets_ = std::move(targets);
    time_ = time;
    if (!saves_.empty()) waitForDecision();
}

void X11PasteboardHeir::forget() {
    state_ = State::nothing;
    snapshot_.reset();
    targets_.clear();
    further_.clear();
    furtherSize_ = 0;
    orphanedAt_.reset();
    decisionDue_.reset();
    if (std::exchange(isSaving_, false)) transfer_.abandon();
    answerSaves(false);
}

void X11PasteboardHeir::decide(const Snapshot& snapshot, Decision decision) {
    if (!snapshot_ || snapshot != snapshot_) return;
    if (decision == Decision::keep) {
        if (state_ != State::undecided) return;
        state_ = State::kept;
        decisionDue_.reset();
        return orphanedAt_ ? takeOver() : saveNext();
    }
    const bool isOrphaned = orphanedAt_.has_value(), isTakenOver = isOrphaned && offer_.owns(clipboard_);
    if (isTakenOver) offer_.release(clipboard_);
    forget();
    // That nobody owns it any more is told by the server when it was released.
    if (isOrphaned && !isTakenOver && connection_.owner(clipboard_) == XCB_NONE) lost_();
}

bool X11PasteboardHeir::holdsSomething() const {
    return snapshot_ && (snapshot_->size() > 0 || !further_.empty());
}

bool X11PasteboardHeir::inherit(xcb_timestamp_t time) {
    if (std::exchange(isSaving_, false)) transfer_.abandon();
    if (!holdsSomething() || state_ == State::awaited) {
        forget();
        return false;
    }
    orphanedAt_ = time;
    if (state_ == State::kept) {
        takeOver();
        answerSaves(true);
    } else {
        waitForDecision();
    }
    return true;
}

// As of the moment when the owner went: whoever copies anything after it has the newer claim.
void X11PasteboardHeir::takeOver() {
    if (connection_.owner(clipboard_) != XCB_NONE) return;
    X11SelectionOffer::Values values = offer_.values(x11_formats::encode(*snapshot_));
    for (const auto& [target, value] : further_)
        values[target] = value;
    offer_.claim(clipboard_, std::move(values), *orphanedAt_);
}

void X11PasteboardHeir::waitForDecision() {
    if (!decisionDue_) decisionDue_ = Clock::now() + connection_.options().decisionDeadline;
}

void X11PasteboardHeir::expire(Clock::time_point now) {
    if (!decisionDue_ || now < *decisionDue_) return;
    decisionDue_.reset();
    decide(snapshot_, Decision::drop);
}

void X11PasteboardHeir::save(const xcb_selection_request_event_t& event) {
    if (offer_.owns(clipboard_)) return offer_.answerSave(event, true);
    if (state_ == State::nothing || saves_.size() >= mostSaves) return offer_.answerSave(event, false);
    saves_.push_back(event);
    if (state_ == State::undecided) waitForDecision();
    if (state_ == State::kept) saveNext();
}

void X11PasteboardHeir::saveNext() {
    if (isSaving_ || saves_.empty()) return;
    std::vector<xcb_atom_t> targets = listed(saves_.front());
    askFurther(further(targets.empty() ? targets_ : targets));
}

void X11PasteboardHeir::askFurther(std::vector<xcb_atom_t> targets) {
    isSaving_ = true;
    savingSince_ = Clock::now();
    wanted_.assign(targets.begin(), targets.end());
    askNext();
}

void X11PasteboardHeir::askNext() {
    if (wanted_.empty()) {
        isSaving_ = false;
        offer_.answerSave(saves_.front(), holdsSomething());
        saves_.pop_front();
        return saveNext();
    }
    const xcb_atom_t target = wanted_.front();
    wanted_.pop_front();
    const std::size_t cap = connection_.options().cap, held = snapshot_->size() + furtherSize_;
    transfer_.begin(target, time_, {cap - std::min(cap, held), savingSince_, furtherSize_},
                    [this, target](X11SelectionTransfer::Result result) { take(target, std::move(result)); });
}

// An owner that stops answering is asked for nothing more: what there is has to do.
void X11PasteboardHeir::take(xcb_atom_t target, X11SelectionTransfer::Result result) {
    if (result.outcome == Outcome::timedOut) {
        connection_.log("A copy was saved in part: its owner does not answer");
        wanted_.clear();
    } else if (result.outcome == Outcome::tooLarge) {
        connection_.log("A copy was saved in part: it is too large");
    } else if (result.outcome == Outcome::done && !result.value.empty()) {
        furtherSize_ += result.value.size();
        further_[target] = {result.type, result.format, std::make_shared<const Bytes>(std::move(result.value))};
    }
    askNext();
}

void X11PasteboardHeir::answerSaves(bool isDone) {
    for (const xcb_selection_request_event_t& event : std::exchange(saves_, {}))
        offer_.answerSave(event, isDone);
}

// The property of the request names what to save; without it, it is everything.
std::vector<xcb_atom_t> X11PasteboardHeir::listed(const xcb_selection_request_event_t& event) const {
    if (event.property == XCB_ATOM_NONE) return {};
    const auto cookie =
        xcb_get_property(connection_.xcb(), 0, event.requestor, event.property, XCB_ATOM_ATOM, 0, mostListedTargets);
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_.xcb(), cookie, nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    return {atoms, atoms + reply->value_len};
}

std::vector<xcb_atom_t> X11PasteboardHeir::further(const std::vector<xcb_atom_t>& targets) const {
    std::vector<xcb_get_atom_name_cookie_t> cookies;
    const std::size_t count = std::min<std::size_t>(targets.size(), mostListedTargets);
    for (std::size_t i = 0; i < count; ++i)
        cookies.push_back(xcb_get_atom_name(connection_.xcb(), targets[i]));
    std::map<std::string, xcb_atom_t> atoms;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        std::string name = nameOf(connection_.xcb(), cookies[i]);
        if (name.empty() || further_.contains(targets[i])) continue;
        atoms[name] = targets[i];
        names.push_back(std::move(name));
    }
    std::vector<xcb_atom_t> further;
    for (const std::string& name : x11_formats::furtherTargets(names, *snapshot_))
        if (further.size() < mostFurtherTargets) further.push_back(atoms[name]);
    return further;
}

}  // namespace brimquill::platform
