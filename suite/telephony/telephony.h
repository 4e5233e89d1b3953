#pragma once

// Opening and closing the telephony library's store. The host opens it once at start; if
// nothing opened it, the first telephony call opens telephony.db in the data directory.
//
// Ownership: every object the library hands out as a pointer (messages, containers, contacts,
// folders, main preferences, service-centre lists and entries) stays valid until close(), even
// after it was deleted from the store; only CbFolder::get returns objects the caller deletes.
// A container is a snapshot: it is not changed afterwards, and asking again for the same folder
// and order returns the same object until the store changes. The sixteen most recent snapshots
// of each folder and order are kept.

#include "gsm/result.h"

#include <QString>

namespace tessaly::telephony {

struct Options {
    // Empty: telephony.db in tessaly::dataDirectory(); ":memory:" for a store that vanishes.
    QString databasePath;
    // The simulated radio's pace: per segment sent, and per message moved off the SIM.
    int segmentDelayMs = 1200;
    int simTransferDelayMs = 250;
};

// Closes any open store first. A damaged file is reported (path and SQLite's words), never
// replaced.
GSM::Result open(const Options& options = {});
// Frees every object handed out; call it only once the module is unloaded.
void close();
bool isOpen();
// Why the store is not available (success when it is open).
GSM::Result lastOpenResult();

} // namespace tessaly::telephony
