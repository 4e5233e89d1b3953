#include "suite/host/radio_choice.h"

#include "suite/telephony/modemmanager_backend.h"

namespace tessaly::host {

RadioChoice chooseRadio(RadioKind kind, const QDBusConnection& bus) {
    RadioChoice choice;
    if (kind != RadioKind::Simulator) {
        if (auto backend = telephony::ModemManagerBackend::find(bus)) {
            telephony::setRadioBackend(backend);
            backend->start();
        } else if (kind == RadioKind::ModemManager) {
            choice.ok = false;
            choice.error = QStringLiteral("ModemManager reports no modem that handles SMS");
        }
    }
    if (kind == RadioKind::Simulator || choice.ok)
        choice.description = QString::fromStdU16String(telephony::radioDescription());
    return choice;
}

} // namespace tessaly::host
