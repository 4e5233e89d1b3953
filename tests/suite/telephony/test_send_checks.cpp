// The checks that decide a message's outcome before anything is sent.

#include "suite/telephony/send_checks.h"

#include "gsm/device.h"

#include <gtest/gtest.h>

namespace {

using tessaly::telephony::isTemporaryFailure;
using tessaly::telephony::kSendRetries;
using tessaly::telephony::refusalBeforeSending;
using tessaly::telephony::refusalOfTheNetwork;
using tessaly::telephony::retryDelayMs;

TEST(SendChecks, AMessageThatCannotGoOutIsRefusedWithItsReason) {
    const struct {
        std::vector<std::u16string> numbers;
        int segments;
        long code; // ErrorNone: it may go
        const char16_t* text;
    } cases[] = {
        {{u"+4917111"}, 1, GSM::ErrorNone, u""},
        {{u"+4917111", u"+4917222"}, 255, GSM::ErrorNone, u""},
        {{}, 1, GSM::ErrorNoRecipient, u"The message has no recipient."},
        {{u"+4917111", u" \t"},
         1,
         GSM::ErrorNoRecipient,
         u"A recipient of the message has no number."},
        {{u""}, 1, GSM::ErrorNoRecipient, u"A recipient of the message has no number."},
        {{u"+4917111"},
         256,
         GSM::ErrorInvalidArgument,
         u"The message is too long to be sent: it needs 256 parts, and at most 255 fit into one "
         u"message."},
        // No recipient is told before too many parts.
        {{}, 300, GSM::ErrorNoRecipient, u"The message has no recipient."},
    };
    for (const auto& c : cases) {
        const auto refusal = refusalBeforeSending(c.numbers, c.segments);
        EXPECT_EQ(refusal.has_value(), c.code != GSM::ErrorNone) << c.segments;
        if (!refusal)
            continue;
        EXPECT_EQ(refusal->errorCode(), c.code);
        EXPECT_EQ(std::u16string(refusal->getErrorMessage()), c.text);
    }
}

TEST(SendChecks, TheNetworkRefusesWithoutServiceAndWhenRoamingIsOff) {
    const struct {
        int state;
        bool roamingAllowed;
        long refusal; // ErrorNone: none
    } cases[] = {
        {GSM::Device::StateRegisteredHome, false, GSM::ErrorNone},
        {GSM::Device::StateRegisteredRoaming, true, GSM::ErrorNone},
        {GSM::Device::StateRegisteredRoaming, false, GSM::ErrorNotAvailable},
        {GSM::Device::StateSearching, true, GSM::ErrorNoNetwork},
        {GSM::Device::StateNoSim, true, GSM::ErrorNoNetwork},
        {GSM::Device::StateOff, true, GSM::ErrorNoNetwork},
    };
    for (const auto& c : cases) {
        const auto refusal = refusalOfTheNetwork(c.state, c.roamingAllowed);
        EXPECT_EQ(refusal ? refusal->errorCode() : GSM::ErrorNone, c.refusal)
            << c.state << " " << c.roamingAllowed;
    }
}

TEST(SendChecks, OnlyNoNetworkAndABusyModemAreTriedAgain) {
    const struct {
        long code;
        bool temporary;
    } cases[] = {
        {GSM::ErrorNoNetwork, true},        {GSM::ErrorBusy, true},
        {GSM::ErrorNetworkRejected, false}, {GSM::ErrorInvalidArgument, false},
        {GSM::ErrorNoRecipient, false},     {GSM::ErrorNotAvailable, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(isTemporaryFailure(GSM::Result(c.code, u"x")), c.temporary) << c.code;
    EXPECT_EQ(retryDelayMs(0), -1);
    EXPECT_EQ(retryDelayMs(1), 30'000);
    EXPECT_EQ(retryDelayMs(kSendRetries), 480'000);
    EXPECT_EQ(retryDelayMs(kSendRetries + 1), -1);
}

} // namespace
