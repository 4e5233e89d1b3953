#pragma once

// A believable phone for a newcomer: a dozen contacts, a few dozen Inbox and Outbox messages
// spread over the last week (the newest few unread), and two cell broadcast channels with a
// message each.

#include "framework/win32types.h"
#include "gsm/result.h"

namespace tessaly::host {

// Whether the telephony store already holds messages or contacts.
bool hasStoredData();

enum class DemoSeeding { Seeded, AlreadyHadData, Failed };

// Seeds the open telephony store around `now` (local time) unless it already holds data; a
// directory someone has used is never filled up with demo data. `result` gets the reason of a
// failure.
DemoSeeding seedDemoData(const SYSTEMTIME& now, GSM::Result* result = nullptr);

} // namespace tessaly::host
