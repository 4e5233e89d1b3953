#include "resources/resource.h"
#include "resources/sms_resources.h"

#include "framework/resources/module_state.h"
#include "framework/resources/resources.h"
#include "tests/testkit/qstring_printer.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

const tessaly::ResourceScript& english() {
    return tessaly::sms::resourcesFor(QStringLiteral("en"));
}

TEST(SmsScript, EmbeddedEnglishScriptParses) {
    const tessaly::ResourceParseResult result = tessaly::sms::parseEmbeddedScript("en");
    ASSERT_TRUE(result.ok()) << qPrintable(result.error->toString());
    EXPECT_GT(result.script.strings.size(), 250u);
    EXPECT_GT(result.script.menus.size(), 10u);
}

TEST(SmsScript, TextsLoadByNumberExactly) {
    struct Case {
        int id;
        QString text;
    };
    const Case cases[] = {
        {IDS_APP_TITLE, "SMS"},
        {57344, "SMS"},
        {IDS_OPTIONS, "Options"},
        {IDS_COLON, ":"},
        {IDS_DATE_ON, " on "},
        {IDS_PM, " PM"},
        {IDS_AM, " AM"},
        {IDS_STATUS_DELETED, "Deleted"},
        {IDS_STATUS_DRAFT, "Draft"},
        {IDS_STATUS_SEND_NOW, "Send now"},
        {IDS_STATUS_NOT_SENT, "Not sent"},
        {IDS_STATUS_UNKNOWN, "Unknown"},
        {IDS_VALIDITY_UNKNOWN, "Unknown"},
        {IDS_UNKNOWN_SENDER, "Unknown"},
        {IDS_VALIDITY_1_WEEK, "1 Week"},
        {IDS_NEW_VALUE_ROW, "<<New value>>"},
        {IDS_CALL_FAILED,
         "You can not call %s, because you are currently unable to establish a connection."},
        {IDS_OTHER_NEW_MESSAGES, "There are %d other new messages."},
        {IDS_SEGMENT_OF, "%d of %d"},
        {IDS_FOLDER_TOO_LARGE,
         "The Inbox contains more than 1,000 entries. You should delete some entries."},
        {IDS_RESTORE_TEMPLATES_QUESTION,
         "Restores the specified templates (factory settings)\nand deletes the user-defined "
         "templates!"},
        {IDS_RESTORE_VARIABLES_QUESTION,
         "Restores specified variables (factory settings)\nand deletes user-defined variables!"},
        {IDS_RESTORE_SERVICE_CENTRES_QUESTION,
         "Restores the list of service center addresses (factory settings) \nand undoes the "
         "selection!"},
        {IDS_SERVICE_CENTRE_EMPTY,
         "Currently chosen Service Center is empty\nPlease check your settings"},
        {IDS_SIM_ADDRESS_READ_ONLY, "Cannot modify address of SIM!"},
        {IDS_DELETE_SERVICE_CENTRE_QUESTION, "Do you want to delete the preferred Service Centre?"},
        {IDS_VIEW_DELETE_QUESTION, "Are you sure that you want to delete this message?"},
        {IDS_DELETE_MESSAGE_QUESTION, "Are you sure that you want to delete this message?"},
        {IDS_NUMBER_ALREADY_STORED,
         "Number is already stored in contacts. Do you really want to add it again?"},
        {IDS_CONTACT_ADDED, "The Contact has been added to the Phonebook"},
        {IDS_PHONEBOOK_ERROR, "Error executing PhoneBook"},
        {IDS_INVALID_PHONE_CHARACTER, "Characters cannot be used in a phone number."},
        {IDS_SAMPLE_SC_NAME, "A1 (AUT)"},
        {IDS_SAMPLE_SC_NUMBER, "+436640501"},
        {IDS_VAR_MEET, "Meet..."},
        {IDS_VAR_THANKS_FOR, "Thanks for..."},
        {IDS_VAR_TIME_SPAN, "Time Span"},
        {IDS_CHOOSE, "Choose..."},
        {IDS_TIME_IN_1_HOUR_30_MINUTES, "in 1 hour 30 minutes"},
        {IDS_DATE_YESTERDAY, "yesterday"},
        {IDS_FIELD_NAME_AND_PHONE, "Name and Phone"},
        {IDS_MESSAGES_SEND_ERROR, "There were errors while sending your messages."},
        {IDS_ANOTHER_NEW_MESSAGE, "There is another new message."},
        {IDS_SIM_TRANSFER_DONE, "Retrieving SMS messages from your SIM card has been completed."},
        {IDS_TOO_MANY_DAYS, "Number of days cannot be greater than 100."},
        {IDS_VARIABLES_NOT_REPLACED,
         "Some of the variables are not replaced in the message. Do you want to continue?"},
        {IDS_TEMPLATE_EXISTS, "Template name already exists. Do you really want to overwrite it?"},
        {IDS_TEMPLATE_NAME_EMPTY, "Template name cannot be empty!"},
        {IDS_CELLBROADCAST, "Cellbroadcast"},
        {IDS_CB_QUERYING, "Querying set of active channels and selected languages."},
        {IDS_LANG_FINNISH, "Finish"},
        {IDS_LANG_ICELANDIC, "Icelandic"},
        {IDS_TEMPLATE_GREETING, "Greeting"},
        {IDS_TEMPLATE_SIGNATURE, "Signature"},
        {12002, "Please call me at [Sender:Phone]."},
        {12006, "Can we meet [Date:Today] at [Time:Now] [Meet...:for lunch]?"},
        {12019, "END: Keep this at the end of the template definitions"},
        {11000, "Start of Variable Definitions"},
        {11090, "END:Please keep this after the last variable definiton"},
    };
    const tessaly::ModuleStateGuard guard(&english(), nullptr);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.id);
        EXPECT_EQ(tessaly::loadString(c.id), c.text);
    }
}

TEST(SmsScript, NumberedSeriesAreComplete) {
    struct Series {
        int first;
        QStringList texts;
    };
    const Series series[] = {
        {IDS_STATUS_DELETED,
         {"Deleted", "Draft", "Failed", "Forwarded", "Incomplete", "Read", "Replied", "Send now",
          "Sent", "Unknown", "Unread", "Not sent"}},
        {IDS_VALIDITY_1_HOUR, {"1 Hour", "6 Hours", "1 Day", "1 Week", "Maximum"}},
        {IDS_BUILTIN_VARIABLES_FIRST,
         {"Ending", "Greeting", "Meet...", "Meeting Status", "Thanks for...", "Time Span",
          "Contact", "Date", "Recipient", "Sender", "Time"}},
        {IDS_TIME_IN_15_MINUTES,
         {"in 15 minutes", "in 30 minutes", "in 45 minutes", "in 1 hour", "in 1 hour 30 minutes",
          "in 2 hours", "in 3 hours", "in 4 hours", "today", "tomorrow", "yesterday"}},
        {IDS_FIELD_FIRST_NAME,
         {"First Name", "Last Name", "Full Name", "Initials", "Name and Phone", "Phone"}},
        {IDS_MESSAGE_SENT,
         {"Your message was sent successfully.", "Your messages were sent successfully.",
          "There was an error while sending your message.",
          "There were errors while sending your messages."}},
        {IDS_LANG_ENGLISH,
         {"English",    "German",  "Italian", "French",    "Spanish", "Dutch",    "Danish",
          "Portuguese", "Swedish", "Finish",  "Norwegian", "Greek",   "Turkish",  "Hungarian",
          "Polish",     "Czech",   "Hebrew",  "Arabic",    "Russian", "Icelandic"}},
    };
    for (const Series& s : series) {
        for (int i = 0; i < s.texts.size(); ++i) {
            SCOPED_TRACE(s.first + i);
            EXPECT_EQ(english().string(s.first + i), s.texts[i]);
        }
    }
}

TEST(SmsScript, EveryStringHasTextAndANumberInTheModuleRange) {
    for (const auto& [id, text] : english().strings) {
        SCOPED_TRACE(id);
        EXPECT_TRUE((id >= 10000 && id <= 12531) || id == IDS_APP_TITLE);
        EXPECT_FALSE(text.isEmpty());
    }
}

// The factory variables as the restore walk reads them: "VAR:" opens a variable, "DEF:" sets
// its default, any other line longer than the marker is a value; "END:" closes the run.
struct FactoryVariable {
    QString name;
    QString defaultValue;
    QStringList values;
    bool operator==(const FactoryVariable&) const = default;
};

std::vector<FactoryVariable> readFactoryVariables(const tessaly::ResourceScript& script) {
    std::vector<FactoryVariable> variables;
    for (int id = IDS_FACTORY_VARIABLES_FIRST; id <= IDS_FACTORY_VARIABLES_LAST; ++id) {
        const QString line = script.string(id);
        if (line.contains(QStringLiteral("END:")))
            break;
        if (line.contains(QStringLiteral("VAR:")))
            variables.push_back({line.mid(4), {}, {}});
        else if (variables.empty())
            continue; // the run's opening comment
        else if (line.contains(QStringLiteral("DEF:")))
            variables.back().defaultValue = line.mid(4);
        else if (line.size() > 4)
            variables.back().values.append(line.mid(4));
    }
    return variables;
}

TEST(SmsScript, FactoryVariablesRunAsShipped) {
    const QStringList person{"First name", "Last name",      "Full Name",
                             "Initials",   "Name and Phone", "Phone"};
    const std::vector<FactoryVariable> expected{
        {"Contact", "Name and Phone", person},
        {"Date", "today", {"yesterday", "today", "tomorrow"}},
        {"Meet...", "for lunch", {"for dinner", "for lunch", "after work"}},
        {"Meeting Status", "confirmed", {"canceled", "confirmed", "postponed"}},
        {"Recipient", "Name and Phone", person},
        {"Sender", "Name and Phone", person},
        {"Time",
         "Now",
         {"Now", "in 15 minutes", "in 30 minutes", "in 45 minutes", "in 1 hour",
          "in 1 hour 30 minutes", "in 2 hours", "in 3 hours", "in 4 hours"}},
        {"Thanks for...",
         "the meeting",
         {"dinner", "lunch", "the contract", "the invitation", "the funds transfer", "the meeting",
          "your understanding"}},
        {"Time span",
         "30 minutes",
         {"15 minutes", "30 minutes", "1 hour", "2 hours", "4 hours", "1 week", "2 weeks",
          "1 month", "2 months"}},
        {"Ending",
         "Regards",
         {"Best wishes", "Yours Faithfully", "Yours sincerely", "Regards", "Best regards",
          "Kind regards", "Bye", "Cheers"}},
        {"Greeting", "Hello", {"Dear", "Hello", "Hi", "Good morning", "Good day", "Good evening"}},
    };
    EXPECT_EQ(readFactoryVariables(english()), expected);

    // The walk's bounds hold the whole run, every line of it is present, and it is closed.
    for (int id = IDS_FACTORY_VARIABLES_FIRST; id <= IDS_FACTORY_VARIABLES_LAST + 1; ++id)
        EXPECT_FALSE(english().string(id).isEmpty()) << id;
    EXPECT_TRUE(english().string(IDS_FACTORY_VARIABLES_LAST).startsWith(QStringLiteral("END:")));
    EXPECT_TRUE(
        english().string(IDS_FACTORY_VARIABLES_LAST - 1).startsWith(QStringLiteral("VAL:")));
}

TEST(SmsScript, FactoryTemplatesComeInNameBodyPairs) {
    const std::pair<QString, QString> expected[] = {
        {"Call me", "Please call me at [Sender:Phone]."},
        {"Incoming call", "[Contact:Name and Phone] has called."},
        {"Meeting", "Can we meet [Date:Today] at [Time:Now] [Meet...:for lunch]?"},
        {"Meeting update",
         "The meeting with [Contact:Full Name] has been [Meeting Status:confirmed]."},
        {"Signature", "[Ending:Regards], [Sender:Full Name]"},
        {"Greeting", "[Greeting:Hello] [Recipient:First Name],"},
        {"Return call", "Please return call to [Contact:Name and Phone]."},
        {"Thanks for", "Thanks for [Thanks for...:the meeting]."},
        {"Will be late", "I will be [Time span:30 minutes] late."},
    };
    int id = IDS_FACTORY_TEMPLATES_FIRST;
    for (const auto& [name, body] : expected) {
        SCOPED_TRACE(name.toStdString());
        EXPECT_EQ(english().string(id), name);
        EXPECT_EQ(english().string(id + 1), body);
        id += 2;
    }
    EXPECT_EQ(id, IDS_FACTORY_TEMPLATES_END);
}

TEST(SmsScript, SharedHeaderAgreesWithTheScript) {
    const std::pair<const char*, int> symbols[] = {
        {"IDS_APP_TITLE", IDS_APP_TITLE},
        {"IDS_FACTORY_VARIABLES_LAST", IDS_FACTORY_VARIABLES_LAST},
        {"IDS_COMPUTED_VARIABLES_FIRST", IDS_COMPUTED_VARIABLES_FIRST},
        {"IDR_MENU_MAIN", IDR_MENU_MAIN},
        {"IDM_INBOX_REPLY", IDM_INBOX_REPLY},
        {"IDM_EDIT_SELECT_ALL", IDM_EDIT_SELECT_ALL},
        {"IDD_MAIN", IDD_MAIN},
    };
    for (const auto& [name, value] : symbols)
        EXPECT_EQ(english().symbols.at(QLatin1String(name)), value) << name;
}

TEST(SmsScript, LanguageWithoutScriptGetsEnglish) {
    EXPECT_EQ(tessaly::sms::resolvedLanguage("fr_FR"), QStringLiteral("en"));
    EXPECT_EQ(&tessaly::sms::resourcesFor("fr"), &english());
    EXPECT_EQ(tessaly::sms::resources().string(IDS_APP_TITLE), QStringLiteral("SMS"));
}

} // namespace
