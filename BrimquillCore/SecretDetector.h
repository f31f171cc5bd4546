#pragma once

#include "BrimquillCore/Foundation/Date.h"

#include <atomic>
#include <optional>
#include <string_view>

/// Tells from a clip's text alone whether it looks like a secret that should not stay: a one-time code, a card number,
/// or something that begins like a well-known key.
namespace brimquill::SecretDetector {

/// How long a detected secret lives, in seconds from its detection.
inline constexpr double expiryInterval = 60;

/// The master switch, for the whole process; while false nothing is detected. Any thread.
extern std::atomic<bool> autoExpiryEnabled;

/// When the clip of this text has to be destroyed, `now` being the time of its detection; nothing when it looks like
/// no secret. Blunt on purpose: any four to eight digits count, and what follows a known prefix is not looked at.
/// Any thread.
std::optional<Date> expiryDate(std::string_view text, Date now);

}  // namespace brimquill::SecretDetector
