#pragma once

// Which radio the phone uses: the simulator, or a modem through ModemManager.

#include "host/host_options.h"

#include <QDBusConnection>
#include <QString>

namespace tessaly::host {

struct RadioChoice {
    bool ok = true;
    QString description; // what the phone tells the person it uses
    QString error;       // why a demanded modem is not there
};

// How long `auto` waits for ModemManager's answer before it takes the simulator.
constexpr int kAutoLookMs = 200;

// Installs the radio backend `kind` asks for and starts it (the modem's messages are imported,
// so the host's hooks must be in place). Auto falls back to the simulator when ModemManager on
// `bus` reports no modem (it never starts ModemManager through the bus, and asks for at most
// kAutoLookMs); ModemManager then fails instead.
RadioChoice chooseRadio(RadioKind kind, const QDBusConnection& bus);

} // namespace tessaly::host
