// The checks that decide a message's outcome before anything is sent.

#include "suite/telephony/send_checks.h"

#include "gsm/device.h"

#include <gtest/gtest.h>

namespace {

using tessaly::telephony::refusalBeforeSending;
using tessaly::telephony::refusalOfTheNetwork;

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
        bool refused;
    } cases[] = {
        {GSM::Device::StateRegisteredHome, false, false},
        {GSM::Device::StateRegisteredRoaming, true, false},
        {GSM::Device::StateRegisteredRoaming, false, true},
        {GSM::Device::StateSearching, true, true},
        {GSM::Device::StateNoSim, true, true},
        {GSM::Device::StateOff, true, true},
    };
    for (const auto& c : cases) {
        const auto refusal = refusalOfTheNetwork(c.state, c.roamingAllowed);
        EXPECT_EQ(refusal.has_value(), c.refused) << c.state << " " << c.roamingAllowed;
        if (refusal)
            EXPECT_EQ(refusal->errorCode(), GSM::ErrorNoNetwork);
    }
}

} // namespace
