#include "host/radio_choice.h"

#include "suite/telephony/modemmanager_backend.h"

namespace tessaly::host {

RadioChoice chooseRadio(RadioKind kind, const QDBusConnection& bus) {
    if (kind != RadioKind::Simulator) {
        if (auto backend = telephony::ModemManagerBackend::find(bus)) {
            telephony::setRadioBackend(backend);
            backend->start();
        } else if (kind == RadioKind::ModemManager) {
            return {false, {}, QStringLiteral("ModemManager reports no modem that handles SMS")};
        }
    }
    return {true, QString::fromStdU16String(telephony::radioDescription()), {}};
}

} // namespace tessaly::host
