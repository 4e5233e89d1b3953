#include "templates/factory_defaults.h"
#include "templates/placeholder_expander.h"
#include "templates/template_store.h"

#include "templates_test_support.h"

namespace {

using templates_test::TemplatesTest;
using tessaly::sms::PlaceholderExpander;
using tessaly::sms::RecipientInfo;
using tessaly::sms::SenderInfo;
using tessaly::sms::TemplateStore;

const SenderInfo kAnn{"Ann", "Lee", "+4912"};
const RecipientInfo kBob{"Bob", "Marsh", "Bob Marsh", "BM", "+111"};

class PlaceholderExpanderTest : public TemplatesTest {};

TEST_F(PlaceholderExpanderTest, TimeValues) {
    const struct {
        int hour;
        int minute;
        const char* word;
        const char* text;
    } cases[] = {
        {14, 5, "Now", "14:05"},
        {9, 0, "now", "09:00"}, // words compare exactly: nothing added
        {23, 50, "in 15 minutes", "24:05"},
        {22, 0, "in 4 hours", "26:00"},
        {10, 45, "in 1 hour 30 minutes", "12:15"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.word);
        clock.set(2003, 5, 17, c.hour, c.minute);
        EXPECT_EQ(
            PlaceholderExpander::computeValue(QStringLiteral("Time"), QString::fromLatin1(c.word)),
            QString::fromLatin1(c.text));
    }
}

// A translation's own words: the German time, date and person words fill its placeholders.
TEST_F(PlaceholderExpanderTest, GermanPlaceholdersAreFilledWithTheirOwnWords) {
    tessaly::setCurrentResources(&tessaly::sms::resourcesFor(QStringLiteral("de")));
    clock.set(2003, 5, 17, 14, 5);
    const struct {
        const char* text;
        const char* sent;
    } cases[] = {
        {"um [Uhrzeit:jetzt]", "um 14:05"},
        {"[Datum:morgen]", " am 2003-05-18"},
        {"Bitte ruf mich unter [Absender:Telefon] an.", "Bitte ruf mich unter +4912 an."},
        {"[Empfänger:Vollständiger Name]", "Bob Marsh"},
        {"[Time:Now]", "Time:Now"}, // English words mean nothing in German
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        PlaceholderExpander expander(kAnn);
        EXPECT_EQ(expander.expandForSending(QString::fromUtf8(c.text), kBob),
                  QString::fromUtf8(c.sent));
    }
    tessaly::setCurrentResources(&tessaly::sms::resources());
}

TEST_F(PlaceholderExpanderTest, DateValues) {
    const struct {
        int year;
        int month;
        int day;
        const char* word;
        const char* text;
    } cases[] = {
        {2003, 5, 17, "today", " on 2003-05-17"},
        {2003, 5, 17, "Today", " on 2003-05-17"},
        {2003, 12, 31, "tomorrow", " on 2004-01-01"},
        {2004, 3, 1, "yesterday", " on 2004-02-29"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.word);
        clock.set(c.year, c.month, c.day, 12, 0);
        EXPECT_EQ(
            PlaceholderExpander::computeValue(QStringLiteral("Date"), QString::fromLatin1(c.word)),
            QString::fromLatin1(c.text));
    }
    EXPECT_EQ(PlaceholderExpander::computeValue(QStringLiteral("Greeting"), QStringLiteral("Hi")),
              QStringLiteral("Hi"));
}

TEST_F(PlaceholderExpanderTest, ExpandForSending) {
    const struct {
        const char* text;
        const char* sent;
    } cases[] = {
        {"Please call me at [Sender:Phone].", "Please call me at +4912."},
        {"[Sender:first name]", "Ann"},
        {"[sender:First Name]", "sender:First Name"},
        {"[Sender:Full Name]/[Sender:Initials]/[Sender:Name and Phone]",
         "Ann Lee/AL/Ann Lee, +4912"},
        {"[Recipient:Name and Phone]; [Recipient:INITIALS]; [Recipient:Last Name]",
         "Bob Marsh, +111; BM; Marsh"},
        {"x[Recipient:Age]y", "xy"},
        {"[Greeting:Hi] [Recipient:First Name],", "Greeting:Hi Bob,"},
        {"[NoColon] end", "NoColon end"},
        // The composer's form of the "Meeting" template.
        {"Can we meet [Date:today] at [Time:Now] <for lunch>?",
         "Can we meet  on 2003-05-17 at 14:05 for lunch?"},
        {"Can we meet [Date:Today] at [Time:in 1 hour]?", "Can we meet Today at in 1 hour?"},
        {"[Date:tomorrow]", " on 2003-05-18"},
        {"[Date:yesterday], [Date:today]", " on 2003-05-16,  on 2003-05-17"},
        {"Now is the time: [Time:Now]", "14:05 is the time: 14:05"},
        {"Now or never", "Now or never"},
        {"today [Date:today]", " on 2003-05-17  on 2003-05-17"},
        {"Contact: [Contact:Ann]", "  Ann"}, // three blanks, collapsed once
        {"[Time:12:30 ]", " 12:30 "},
        {"a [b c", "a b c"},
        {"a ] b [Sender:Phone", "a b Sender:Phone"},
        {"<<x>> [[Sender:Phone]]", "x "}, // the first "]" closes: "[Sender:Phone>" has no field
        {"[Sender:[Recipient:Phone]", ""},
        {"", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        PlaceholderExpander expander(kAnn);
        EXPECT_EQ(expander.expandForSending(QString::fromLatin1(c.text), kBob),
                  QString::fromLatin1(c.sent));
        EXPECT_FALSE(expander.senderInformationMissing());
    }
}

TEST_F(PlaceholderExpanderTest, SenderInformationMissing) {
    const struct {
        SenderInfo sender;
        const char* field;
        bool missing;
        const char* sent;
    } cases[] = {
        {{"", "Lee", ""}, "First Name", true, ""},
        {{"", "Lee", ""}, "Last Name", false, "Lee"},
        {{"", "Lee", ""}, "Full Name", false, " Lee"},
        {{"", "Lee", ""}, "Initials", false, "L"},
        {{"", "", ""}, "Initials", true, ""},
        {{"", "", ""}, "Full Name", true, " "},
        {{"", "", "+1"}, "Name and Phone", false, " , +1"},
        {{"", "", ""}, "Name and Phone", true, " , "},
        {{"Ann", "Lee", ""}, "Phone", true, ""},
        {{"", "", ""}, "Shoe Size", false, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.field);
        PlaceholderExpander expander(c.sender);
        const QString text = QStringLiteral("[Sender:%1]").arg(QString::fromLatin1(c.field));
        EXPECT_EQ(expander.expandForSending(text, {}), QString::fromLatin1(c.sent));
        EXPECT_EQ(expander.senderInformationMissing(), c.missing);
    }

    // The flag stays set across expansions until it is cleared.
    PlaceholderExpander expander(SenderInfo{"Ann", "", ""});
    expander.expandForSending(QStringLiteral("[Sender:Phone]"), kBob);
    expander.expandForSending(QStringLiteral("[Sender:First Name]"), kBob);
    EXPECT_TRUE(expander.senderInformationMissing());
    expander.clearSenderInformationMissing();
    expander.expandForSending(QStringLiteral("[Sender:First Name]"), kBob);
    EXPECT_FALSE(expander.senderInformationMissing());
}

TEST_F(PlaceholderExpanderTest, TheSenderIsTheSettingsSignature) {
    SmsSettings settings;
    settings.firstName = QStringLiteral("Ann");
    settings.phone = QStringLiteral("+4912");
    PlaceholderExpander expander(tessaly::sms::senderInfoOf(settings));
    EXPECT_EQ(expander.expandForSending(QStringLiteral("[Sender:Name and Phone]"), kBob),
              QStringLiteral("Ann , +4912"));
    EXPECT_FALSE(expander.senderInformationMissing());
}

TEST_F(PlaceholderExpanderTest, NamesHoldingMarksDoNotStartPlaceholders) {
    PlaceholderExpander expander(SenderInfo{"[Sender:First Name]", "[x", ""});
    EXPECT_EQ(expander.expandForSending(QStringLiteral("[Sender:Full Name]!"), kBob),
              QStringLiteral("Sender:First Name x!"));
}

// Worked out by hand with the walk that takes the first "[" and the first "]" after it and
// replaces every copy of a person placeholder at once; the fuzz target checks the same against
// that walk on any text.
TEST_F(PlaceholderExpanderTest, TheBracketWalkOnTangledText) {
    const struct {
        const char* text;
        const char* walked;
    } cases[] = {
        // Each lone "[" closes at a later placeholder's "]", so spans grow along the text.
        {"[Sender:First Name] [x:y] [[Sender:First Name] [x:y] [[Sender:First Name] [x:y] [",
         "Ann <x:y> <Ann <x:y> [Ann [x:y> ["},
        // The later copy is replaced with the first, so "[y" closes at the "]" after it.
        {"[Sender:Phone] [y [Sender:Phone] z]", "+4912 <y +4912 z>"},
        {"[Sender:Phone] [a [Sender:Phone]", "+4912 [a +4912"},
        // Here "[x" takes the first copy's "]", and the rest is one span naming no field.
        {"[x [Sender:Phone] [Sender:Phone]", "<x "},
        {"[Recipient:Initials]]]", "BM]]"},
        // "[Sender:x]" and "[Sender:]" name no field and go. Replacing "[Sender:]" leaves
        // "[[Sender:" to join the "]" at the end, after "[Sender:x]" went: the "[Sender:]" it
        // then ends with came too late to be replaced.
        {"[Sender:x][Sender:][[Sender:[Sender:][Sender:x]]", "<[Sender:>"},
        // Here the "[[Sender:" left by "[Sender:x]" joins the "]" before "[Sender:]" goes.
        {"[Sender:x][Sender:][[Sender:[Sender:x]]", "["},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        PlaceholderExpander expander(kAnn);
        EXPECT_EQ(expander.fillPersonPlaceholders(QString::fromUtf8(c.text), kBob),
                  QString::fromUtf8(c.walked));
    }
}

TEST_F(PlaceholderExpanderTest, TemplatesBecomeComposerText) {
    tessaly::sms::restoreFactoryVariables(true);
    TemplateStore::writeVariable({QStringLiteral("Empty"), QString(), {}});
    const struct {
        const char* body;
        const char* text;
    } cases[] = {
        {"[Ending:Regards], [Sender:Full Name]", "<Regards>, [Sender:Full Name]"},
        {"[Greeting] [Recipient:]", "<Hello> [Recipient:Name and Phone]"},
        {"[Time] at [Date:Today]", "[Time:Now] at [Date:Today]"},
        {"[Unknown] and [Empty:]", "<Unknown> and <Empty>"},
        {"a [b", "a [b"},
        {"] [Greeting:Hi] ]", "] <Hi> ]"},
        {"", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body);
        EXPECT_EQ(PlaceholderExpander::templateToComposerText(QString::fromLatin1(c.body)),
                  QString::fromLatin1(c.text));
    }
}

TEST_F(PlaceholderExpanderTest, InsertTemplateAtTheCaret) {
    tessaly::sms::seedFactoryDefaults();
    const QString inserted = QStringLiteral("Please call me at [Sender:Phone].");
    const struct {
        int caret;
        const char* name;
        QString text;
        int caretAfter;
    } cases[] = {
        {3, "Call me", "Hi " + inserted + "there", 3 + int(inserted.size())},
        {99, "Call me", "Hi there" + inserted, 8 + int(inserted.size())},
        {3, "No such template", "Hi there", 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.caret);
        int caretAfter = -1;
        EXPECT_EQ(PlaceholderExpander::insertTemplate(QString::fromLatin1(c.name),
                                                      QStringLiteral("Hi there"), c.caret,
                                                      &caretAfter),
                  c.text);
        EXPECT_EQ(caretAfter, c.caretAfter);
    }
}

TEST_F(PlaceholderExpanderTest, MarkersToPlaceholders) {
    tessaly::sms::restoreFactoryVariables(true);
    const struct {
        const char* text;
        const char* body;
    } cases[] = {
        {"<Hello> <Bob>, <for lunch>", "[Greeting:Hello] [Bob], [Meet...:for lunch]"},
        {"[Time:Now] <Now>", "[Time:Now] [Time:Now]"},
        {"<Contact:Ann>", "[Contact:Ann]"},
        {"<Sender:Phone>", "[Sender:Sender:Phone]"},
        {"a > b <c", "a > b [c"},
        {"<<Hello>>", "[[Hello]]"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(PlaceholderExpander::markersToPlaceholders(QString::fromLatin1(c.text)),
                  QString::fromLatin1(c.body));
    }
}

} // namespace
