#pragma once

// Opening and closing the telephony library's store. The host opens it once at start; if
// nothing opened it, the first telephony call opens telephony.db in the data directory.
//
// Ownership: contacts, folders, main preferences, service-centre lists and entries stay valid
// until close(); only CbFolder::get returns objects the caller deletes. Messages live in the
// database and are made into objects when asked for: a message pointer stays valid while it is
// among the Options::messageObjectsKept messages handed out most recently (by getMessage or a
// container), while a container of a small folder that listed it lives, and while it is being
// edited (from make() or its first change until endEdit). A deleted message's object stays
// readable while it is valid. A container is a snapshot: the folder as it was when it was made,
// in one order; asking again for the same folder and order returns the same object until the
// store changes. The sixteen most recent containers of each folder and order are kept; of a
// large folder's, the two newest read pages on demand, and older ones answer only the positions
// they have already read (null for the others).

#include "gsm/result.h"

#include <QString>

namespace tessaly::telephony {

struct Options {
    // Empty: telephony.db in tessaly::dataDirectory(); ":memory:" for a store that vanishes.
    QString databasePath;
    // The simulated radio's pace: per segment sent, and per message moved off the SIM.
    int segmentDelayMs = 1200;
    int simTransferDelayMs = 250;
    // Message objects kept besides those in use (see Ownership above).
    int messageObjectsKept = 4096;
    // A folder of more messages than this is listed a page at a time (a store in memory is
    // always read whole).
    int readWholeUpTo = 2000;
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
