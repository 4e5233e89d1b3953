#include "host/host_options.h"
#include "host/sms_link.h"
#include "tests/testkit/qstring_printer.h"

#include <gtest/gtest.h>

namespace {

using tessaly::host::parseSmsLink;

TEST(SmsLink, RecipientsAndBodyAreDecoded) {
    const struct {
        QString link;
        QStringList numbers;
        QString body;
    } cases[] = {
        {"sms:+4917012345", {"+4917012345"}, {}},
        {"SMS:+4917012345?body=Hello", {"+4917012345"}, "Hello"},
        {"sms:+49-170-(123).45;phone-context=+49", {"+4917012345"}, {}},
        {"sms:0170,+4930123,%2B4940555?body=x", {"0170", "+4930123", "+4940555"}, "x"},
        {"sms:0170?body=See%20you%20at%208%0A%E2%80%94%20Anna", {"0170"}, "See you at 8\n— Anna"},
        {"sms:0170?body=1+1%3D2%26more", {"0170"}, "1+1=2&more"},
        {"sms:0170?subject=x&BODY=first&body=second", {"0170"}, "first"},
        {"sms:0170?body=", {"0170"}, {}},
        {"sms:0170?body", {"0170"}, {}},
        {"sms:?body=Nobody%20yet", {}, "Nobody yet"},
        {"sms:", {}, {}},
        {"sms:*100%23?body=balance#top", {"*100#"}, "balance"},
        {"sms:0170?body=%F0%9F%98%80", {"0170"}, QString::fromUtf8("\xF0\x9F\x98\x80")},
    };
    for (const auto& c : cases) {
        QString error;
        const auto parsed = parseSmsLink(c.link, &error);
        ASSERT_TRUE(parsed) << c.link.toStdString() << ": " << error.toStdString();
        EXPECT_EQ(parsed->numbers, c.numbers) << c.link.toStdString();
        EXPECT_EQ(parsed->body, c.body) << c.link.toStdString();
    }
}

TEST(SmsLink, AWrittenLinkReadsBackTheSame) {
    const tessaly::host::SmsLink links[] = {
        {{"+4917012345"}, "Hello"},
        {{"0170", "*100#"}, "a&b=c?d#e 100% — ok\r\n😀"},
        {{}, "only text"},
        {{"0170"}, {}},
    };
    for (const auto& link : links) {
        const QString written = tessaly::host::toSmsLink(link);
        const auto read = parseSmsLink(written, nullptr);
        ASSERT_TRUE(read) << written.toStdString();
        EXPECT_EQ(read->numbers, link.numbers) << written.toStdString();
        EXPECT_EQ(read->body, link.body) << written.toStdString();
    }
}

TEST(SmsLink, MalformedLinksSayWhy) {
    const QString cases[] = {
        "tel:+4917012345",        // another scheme
        "sms:0170?body=50%",      // an escape without digits
        "sms:0170?body=%4",       // an escape cut short
        "sms:0170?body=%zz",      // not hex
        "sms:0170?body=%C3%28",   // not UTF-8
        "sms:0170,,0180",         // an empty recipient
        "sms:0170abc",            // letters in a number
        "sms:++49170",            // a plus inside the number
        "sms:-().",               // separators only
        "sms:%D9%A1%D9%A2%D9%A3", // digits, but not ASCII ones
    };
    for (const QString& link : cases) {
        QString error;
        EXPECT_FALSE(parseSmsLink(link, &error)) << link.toStdString();
        EXPECT_FALSE(error.isEmpty()) << link.toStdString();
    }
}

TEST(SmsLink, TheProgramTakesOneLinkAsItsArgument) {
    using tessaly::host::parseHostArguments;
    QString error;
    const auto withLink =
        parseHostArguments({"tessaly-phone", "--demo", "sms:+4917012345?body=Hi%21"}, &error);
    ASSERT_TRUE(withLink) << error.toStdString();
    ASSERT_TRUE(withLink->smsLink);
    EXPECT_EQ(withLink->smsLink->numbers, QStringList{"+4917012345"});
    EXPECT_EQ(withLink->smsLink->body, "Hi!");
    EXPECT_TRUE(withLink->demo);

    EXPECT_FALSE(parseHostArguments({"tessaly-phone"}, &error)->smsLink);
    for (const QStringList& wrong : {QStringList{"tessaly-phone", "sms:0170abc"},
                                     QStringList{"tessaly-phone", "sms:0170", "sms:0180"},
                                     QStringList{"tessaly-phone", "mailto:a@b"}}) {
        error.clear();
        EXPECT_FALSE(parseHostArguments(wrong, &error)) << wrong.join(u' ').toStdString();
        EXPECT_FALSE(error.isEmpty());
    }
}

} // namespace
