#include "suite/telephony/send_checks.h"

#include "gsm/device.h"

#include <QString>

#include <algorithm>

namespace tessaly::telephony {

std::optional<GSM::Result> refusalBeforeSending(const std::vector<std::u16string>& numbers,
                                                int segments) {
    if (numbers.empty())
        return GSM::Result(GSM::ErrorNoRecipient, u"The message has no recipient.");
    if (std::any_of(numbers.begin(), numbers.end(), [](const std::u16string& number) {
            return number.find_first_not_of(u" \t\r\n") == std::u16string::npos;
        }))
        return GSM::Result(GSM::ErrorNoRecipient, u"A recipient of the message has no number.");
    if (segments > kMostSegments) {
        const QString text = QStringLiteral("The message is too long to be sent: it needs %1 "
                                            "parts, and at most %2 fit into one message.")
                                 .arg(segments)
                                 .arg(kMostSegments);
        return GSM::Result(GSM::ErrorInvalidArgument, text.toStdU16String());
    }
    return std::nullopt;
}

std::optional<GSM::Result> refusalOfTheNetwork(int deviceState, bool sendWhileRoaming) {
    if (deviceState != GSM::Device::StateRegisteredHome &&
        deviceState != GSM::Device::StateRegisteredRoaming)
        return GSM::Result(GSM::ErrorNoNetwork, u"There is no network service.");
    if (deviceState == GSM::Device::StateRegisteredRoaming && !sendWhileRoaming)
        return GSM::Result(GSM::ErrorNotAvailable, u"Sending while roaming is switched off.");
    return std::nullopt;
}

bool isTemporaryFailure(const GSM::Result& result) {
    return result.errorCode() == GSM::ErrorNoNetwork || result.errorCode() == GSM::ErrorBusy;
}

int retryDelayMs(int retry) {
    if (retry < 1 || retry > kSendRetries)
        return -1;
    int delayMs = 30'000;
    for (int i = 1; i < retry; ++i)
        delayMs *= 4;
    return delayMs;
}

} // namespace tessaly::telephony
