#pragma once

// The names ModemManager's D-Bus API goes by.

namespace tessaly::telephony::modemmanager {

inline constexpr auto kService = "org.freedesktop.ModemManager1";
inline constexpr auto kRoot = "/org/freedesktop/ModemManager1";
inline constexpr auto kModem = "org.freedesktop.ModemManager1.Modem";
inline constexpr auto kModem3gpp = "org.freedesktop.ModemManager1.Modem.Modem3gpp";
inline constexpr auto kMessaging = "org.freedesktop.ModemManager1.Modem.Messaging";
inline constexpr auto kSms = "org.freedesktop.ModemManager1.Sms";
inline constexpr auto kProperties = "org.freedesktop.DBus.Properties";
inline constexpr auto kObjectManager = "org.freedesktop.DBus.ObjectManager";

} // namespace tessaly::telephony::modemmanager
