// The archive file formats on their own: character references, the backup XML's real-world
// quirks, CSV quoting, and exact round trips of any text.

#include "suite/telephony/archive/archive_format.h"
#include "suite/telephony/archive/character_references.h"

#include "gsm/sms.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <random>

namespace {

namespace archive = tessaly::telephony::archive;

std::uint64_t ticksOf(qint64 milliseconds) {
    std::uint64_t ticks = 0;
    EXPECT_TRUE(archive::localTicksFromUtcMilliseconds(milliseconds, &ticks)) << milliseconds;
    return ticks;
}
using archive::ArchivedMessage;
using archive::Format;
using archive::MessageReader;
using Step = MessageReader::Step;

struct ReadResult {
    std::vector<ArchivedMessage> messages;
    qint64 skipped = 0;
    qint64 skippedMms = 0;
    bool failed = false;
    archive::ReadError error;
};

ReadResult readAll(Format format, const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    const auto reader = archive::makeReader(format, buffer);
    ReadResult result;
    ArchivedMessage message;
    for (;;) {
        const Step step = reader->next(message);
        if (step == Step::Message)
            result.messages.push_back(message);
        else if (step == Step::Skipped)
            ++result.skipped;
        else {
            result.failed = step == Step::Failed;
            result.error = reader->error();
            break;
        }
    }
    result.skippedMms = reader->skippedMms();
    return result;
}

QByteArray writeAll(Format format, const std::vector<ArchivedMessage>& messages) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const auto writer = archive::makeWriter(format, buffer);
    writer->begin(qint64(messages.size()));
    for (const ArchivedMessage& message : messages)
        writer->write(message);
    writer->finish();
    return buffer.data();
}

QByteArray backup(const QByteArray& body) {
    return "<?xml version='1.0' encoding='UTF-8' standalone='yes' ?>\n<smses count=\"1\">\n" +
           body + "\n</smses>\n";
}

// The body the reader gives for an attribute value written into a backup file.
std::u16string bodyRead(const QByteArray& attributeValue) {
    const ReadResult read = readAll(
        Format::Xml, backup("<sms type=\"1\" date=\"0\" body=\"" + attributeValue + "\" />"));
    return read.messages.empty() ? u"<unread>" : read.messages.front().text;
}

TEST(CharacterReferences, ReferencesTheXmlReaderRefusesComeBackAsTheirCodeUnits) {
    const struct {
        QByteArray attribute;
        std::u16string text;
    } cases[] = {
        {"&#55357;&#56832;", u"\U0001F600"}, // an emoji as its two halves
        {"&#xD83D;&#xDE00;", u"\U0001F600"}, // in hexadecimal
        {"a&#55357;b", u"a\xD83D"
                       u"b"},    // a lone high half
        {"&#56832;", u"\xDE00"}, // a lone low half
        {"&#55357;&#65;", u"\xD83D"
                          u"A"},                           // a high half before no low one
        {"&#55357;&#55357;&#56832;", u"\xD83D\U0001F600"}, // two highs, then a low
        {"&#1;&#31;&#0;", std::u16string(u"\x01\x1F") + u'\0'},
        {"&#65534;&#xFFFF;", u"\xFFFE\xFFFF"},
        {"&#10;&#13;&#9;", u"\n\r\t"},                               // references Qt reads itself
        {"\xEF\xB7\x90&#64976;\xEF\xB7\xAF", u"\xFDD0\xFDD0\xFDEF"}, // the escapes' own range
        {"&amp;#55357;", u"&#55357;"},                               // a reference written as text
        {"&#12345678901234;", u"<unread>"}, // no reference: the reader refuses it
    };
    for (const auto& c : cases)
        EXPECT_EQ(bodyRead(c.attribute), c.text) << c.attribute.toStdString();
}

TEST(CharacterReferences, EveryChunkingFiltersAlike) {
    const QByteArray xml = backup("<sms type=\"1\" date=\"5\" body=\"x&#55357;&#56832;&#1;\xEF\xB7"
                                  "\x91y&#xDE00;&#55357;\" address=\"+49&#55357;\" />");
    archive::CharacterReferenceFilter whole;
    const QByteArray expected = whole.filter(xml, true);
    for (int chunk = 1; chunk < 40; ++chunk) {
        archive::CharacterReferenceFilter filter;
        QByteArray filtered;
        for (qsizetype at = 0; at < xml.size(); at += chunk)
            filtered += filter.filter(xml.mid(at, chunk), false);
        filtered += filter.filter({}, true);
        EXPECT_EQ(filtered, expected) << "chunk " << chunk;
    }
}

TEST(BackupXml, RealWorldQuirksReadAsThePersonExpects) {
    const struct {
        const char* name;
        QByteArray body;
        std::vector<ArchivedMessage> messages;
        qint64 skipped;
        qint64 mms;
    } cases[] = {
        {"received, unread, with its centre",
         R"x(<sms protocol="0" address="+4917112" date="1000" type="1" subject="null" body="Hi" toa="null" sc_toa="null" service_center="+4917600" read="0" status="-1" locked="0" date_sent="0" contact_name="(Unknown)" />)x",
         {{GSM::Sms::FolderInbox, GSM::Message::Unread, 0, {u"+4917112"}, u"+4917600", u"Hi"}},
         0,
         0},
        {"null values and a group send",
         R"x(<sms address="+4911 ~ +4922~null~" date="1000" type="2" body="x" service_center="null" read="1" />)x",
         {{GSM::Sms::FolderOutbox, GSM::Message::Sent, 0, {u"+4911", u"+4922"}, u"", u"x"}},
         0,
         0},
        {"draft, outbox and queued are not sent; failed stays failed",
         R"x(<sms address="1" date="1000" type="3" body="a" /><sms address="1" date="1000" type="4" body="b" /><sms address="1" date="1000" type="6" body="c" /><sms address="1" date="1000" type="5" body="d" />)x",
         {{GSM::Sms::FolderOutbox, GSM::Message::NotSent, 0, {u"1"}, u"", u"a"},
          {GSM::Sms::FolderOutbox, GSM::Message::NotSent, 0, {u"1"}, u"", u"b"},
          {GSM::Sms::FolderOutbox, GSM::Message::NotSent, 0, {u"1"}, u"", u"c"},
          {GSM::Sms::FolderOutbox, GSM::Message::Failed, 0, {u"1"}, u"", u"d"}},
         0,
         0},
        {"line breaks as references, literal ones fold into spaces as XML says",
         "<sms address=\"1\" date=\"1000\" type=\"1\" read=\"1\" body=\"a&#13;&#10;b\r\nc\" />",
         {{GSM::Sms::FolderInbox, GSM::Message::Read, 0, {u"1"}, u"", u"a\r\nb c"}},
         0,
         0},
        {"missing read, address and body",
         R"x(<sms date="1000" type="1" />)x",
         {{GSM::Sms::FolderInbox, GSM::Message::Read, 0, {}, u"", u""}},
         0,
         0},
        {"unknown type, missing, bad or impossible date, missing type are skipped",
         R"x(<sms date="1000" type="9" body="a" /><sms type="1" body="b" /><sms date="soon" type="1" /><sms date="1000" body="c" /><sms date="15925709299321005" type="1" /><sms date="-99999999999999" type="1" />)x",
         {},
         6,
         0},
        {"MMS and unknown elements",
         R"x(<mms date="1000" msg_box="1"><parts><part seq="0" ct="text/plain" text="hello" /></parts><addrs><addr address="1" /></addrs></mms><call number="1" /><sms date="1000" type="1" body="after" read="1" />)x",
         {{GSM::Sms::FolderInbox, GSM::Message::Read, 0, {}, u"", u"after"}},
         1,
         1},
        {"comments and a body named null stays a body",
         R"x(<!-- exported --><sms date="1000" type="1" body="null" read="1" />)x",
         {{GSM::Sms::FolderInbox, GSM::Message::Read, 0, {}, u"", u"null"}},
         0,
         0},
    };
    for (const auto& c : cases) {
        const ReadResult result = readAll(Format::Xml, backup(c.body));
        ASSERT_FALSE(result.failed) << c.name << ": " << result.error.describe().toStdString();
        std::vector<ArchivedMessage> expected = c.messages;
        for (ArchivedMessage& message : expected)
            message.dateTicks = ticksOf(1000);
        EXPECT_EQ(result.messages, expected) << c.name;
        EXPECT_EQ(result.skipped, c.skipped) << c.name;
        EXPECT_EQ(result.skippedMms, c.mms) << c.name;
    }
}

TEST(BackupXml, DamagedTruncatedOrForeignFilesSayWhereAndWhy) {
    const QByteArray good = backup(R"x(<sms date="1000" type="1" body="a" />)x");
    const struct {
        const char* name;
        QByteArray bytes;
        qint64 line;
        const char* reason;
    } cases[] = {
        {"empty", "", 1, "no <smses>"},
        {"foreign", "<?xml version='1.0'?>\n<html><body/></html>", 2, "starts with <html>"},
        {"truncated in an element", good.left(good.indexOf("body")), 3, ""},
        {"truncated before the end", good.left(good.indexOf("</smses>")), 4,
         "ends before </smses>"},
        {"not XML", "PK\x03\x04 zip", 1, ""},
        {"broken markup", backup("<sms date=\"1\" type=\"1\" body=\"a\" <sms/>"), 3, ""},
        {"garbage after the end", good + "<smses/>", 5, ""},
    };
    for (const auto& c : cases) {
        const ReadResult result = readAll(Format::Xml, c.bytes);
        EXPECT_TRUE(result.failed) << c.name;
        EXPECT_EQ(result.error.line, c.line)
            << c.name << ": " << result.error.describe().toStdString();
        EXPECT_TRUE(result.error.reason.contains(QString::fromUtf8(c.reason)))
            << c.name << ": " << result.error.reason.toStdString();
    }
}

TEST(MessageCsv, QuotingLineBreaksAndTheHeader) {
    const QByteArray header = "folder,status,date,numbers,service_centre,text\r\n";
    const ReadResult read = readAll(
        Format::Csv, "\xEF\xBB\xBF" + header +
                         "inbox,read,2024-03-01T12:00:00Z,+491,\"+4917\",\"a,\"\"b\"\"\r\nc\"\r\n"
                         "\r\n"
                         "outbox,send now,2024-03-01T12:00:00Z,\"+491;+492\",,plain\n");
    ASSERT_FALSE(read.failed) << read.error.describe().toStdString();
    ASSERT_EQ(read.messages.size(), 2u);
    EXPECT_EQ(read.messages[0].text, u"a,\"b\"\r\nc");
    EXPECT_EQ(read.messages[0].serviceCentre, u"+4917");
    EXPECT_EQ(read.messages[1].status, GSM::Message::NotSent) << "an import never sends";
    EXPECT_EQ(read.messages[1].numbers, (std::vector<std::u16string>{u"+491", u"+492"}));

    const struct {
        QByteArray bytes;
        qint64 line;
        const char* reason;
    } damaged[] = {
        {"", 1, "empty"},
        {"a,b,c\r\n", 1, "first row"},
        {header + "inbox,read,2024-03-01T12:00:00Z,1,,\"open\r\n", 2, "inside a quoted field"},
        {header + "inbox,read,2024-03-01T12:00:00Z,1,\r\n", 2, "5 fields"},
        {header + "inbox,read,2024-03-01T12:00:00Z,1,,ok\r\nattic,read,2024,1,,x\r\n", 3, "folder"},
        {header + "inbox,sent,2024-03-01T12:00:00Z,1,,x\r\n", 2, "status"},
        {header + "inbox,read,yesterday,1,,x\r\n", 2, "ISO 8601"},
        {header + "inbox,read,2024-03-01T12:00:00Z,1,,\"x\"y\r\n", 2, "quoted field"},
    };
    for (const auto& c : damaged) {
        const ReadResult result = readAll(Format::Csv, c.bytes);
        EXPECT_TRUE(result.failed) << c.bytes.toStdString();
        EXPECT_EQ(result.error.line, c.line) << c.bytes.toStdString();
        EXPECT_TRUE(result.error.reason.contains(QString::fromUtf8(c.reason)))
            << result.error.reason.toStdString();
    }
}

// Texts of any UTF-16 code units but NUL: emoji, lone halves, line breaks, noncharacters.
std::u16string randomText(std::mt19937& random, size_t length) {
    static const char16_t pool[] = {u'a',   u' ',   u'\r',  u'\n',  u'\t',  u'&',   u'<',   u'"',
                                    u',',   u';',   u'~',   0x01,   0x1F,   0xE9,   0x20AC, 0xD83D,
                                    0xDE00, 0xDBFF, 0xDC00, 0xFDD0, 0xFDEF, 0xFEFF, 0xFFFE, 0xFFFF};
    std::u16string text;
    for (size_t i = 0; i < length; ++i)
        text.push_back(pool[random() % std::size(pool)]);
    return text;
}

TEST(ArchiveFormats, AnyTextComesBackExactly) {
    std::mt19937 random(20261124);
    std::vector<ArchivedMessage> messages;
    for (int i = 0; i < 300; ++i) {
        ArchivedMessage message;
        message.folder = i % 2 ? GSM::Sms::FolderOutbox : GSM::Sms::FolderInbox;
        message.status = i % 2 ? GSM::Message::Failed : GSM::Message::Unread;
        message.dateTicks = ticksOf(1700000000000 + i * 977);
        message.numbers = {u"+49" + std::u16string(1, char16_t(u'0' + i % 10))};
        if (i % 3 == 0)
            message.numbers.push_back(u"+4411");
        message.serviceCentre = i % 4 ? u"+4917600" : u"";
        message.text = randomText(random, random() % 40);
        messages.push_back(message);
    }
    ArchivedMessage huge;
    huge.dateTicks = ticksOf(-11644473600000); // 1601, the first day the store can keep
    huge.text = std::u16string(1 << 20, u'\xD83D');
    messages.push_back(huge);
    for (const Format format : {Format::Xml, Format::Csv}) {
        const ReadResult read = readAll(format, writeAll(format, messages));
        ASSERT_FALSE(read.failed) << read.error.describe().toStdString();
        ASSERT_EQ(read.messages.size(), messages.size());
        for (size_t i = 0; i < messages.size(); ++i)
            ASSERT_EQ(read.messages[i], messages[i]) << "message " << i;
    }
}

TEST(ArchiveFormats, FormatComesFromTheExtension) {
    Format format;
    EXPECT_TRUE(archive::formatFromFileName("a/b.XML", &format));
    EXPECT_EQ(format, Format::Xml);
    EXPECT_TRUE(archive::formatFromFileName("b.csv", &format));
    EXPECT_EQ(format, Format::Csv);
    EXPECT_FALSE(archive::formatFromFileName("b.xml.gz", &format));
    EXPECT_FALSE(archive::formatFromFileName("csv", &format));
}

} // namespace
