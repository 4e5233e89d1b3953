#include "host/radio_choice.h"

#include "suite/modemmanager/modemmanager_backend.h"

namespace tessaly::host {

RadioChoice chooseRadio(RadioKind kind, const QDBusConnection& bus) {
    if (kind != RadioKind::Simulator) {
        // Auto only looks, briefly: it never starts ModemManager, nor waits on a bus that
        // does not answer.
        const bool automatic = kind == RadioKind::Auto;
        if (auto backend = telephony::ModemManagerBackend::find(bus, automatic ? kAutoLookMs : 2000,
                                                                !automatic)) {
            telephony::setRadioBackend(backend);
            backend->start();
        } else if (kind == RadioKind::ModemManager) {
            return {false, {}, QStringLiteral("ModemManager reports no modem that handles SMS")};
        }
    }
    return {true, QString::fromStdU16String(telephony::radioDescription()), {}};
}

} // namespace tessaly::host
