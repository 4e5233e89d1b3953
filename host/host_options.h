#pragma once

// The command line of tessaly-phone.

#include "host/sms_link.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tessaly::host {

// Which radio sends and receives: ModemManager when it reports a modem, else the simulator.
enum class RadioKind { Auto, Simulator, ModemManager };

struct HostOptions {
    QString dataDirectory;     // empty: the default data directory
    bool demo = false;         // seed demo data into an empty data directory
    QString screenshotPath;    // grab the screen once started, save it there and quit
    bool openMessages = false; // press the Messages button once started
    bool help = false;
    RadioKind radio = RadioKind::Auto;
    // Bring messages in from, or take them out to, an archive file (.xml or .csv) and quit
    // without showing the phone.
    QString importFile;
    QString exportFile;
    // An sms: link to open a composer with once the phone shows (the desktop's link handler).
    std::optional<SmsLink> smsLink;
};

// Parses the arguments (the first one is the program). Returns nothing and sets `error` to a
// message for the person when they do not parse.
std::optional<HostOptions> parseHostArguments(const QStringList& arguments, QString* error);
QString hostUsage();

} // namespace tessaly::host
