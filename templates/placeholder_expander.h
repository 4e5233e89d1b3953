#pragma once

// Placeholders in message texts:
//
//   [name:value]   stored templates; composer text for the computed variables
//   [name]         a variable without a chosen value
//   <value>        a value of a list variable as the editors show it, without its name
//
// There is no escaping and no nesting: the first "[" and the first "]" after it delimit a
// placeholder, and the first colon splits name from value. Names compare exactly unless noted.

#include "templates/person_info.h"
#include "templates/template_store.h"

#include <QString>

#include <functional>
#include <optional>

namespace tessaly::sms {

class PlaceholderExpander {
public:
    PlaceholderExpander() = default;
    explicit PlaceholderExpander(SenderInfo sender)
        : sender_(std::move(sender)) {}

    void setSender(const SenderInfo& sender) { sender_ = sender; }
    const SenderInfo& sender() const { return sender_; }

    // The final text for one recipient: sender and recipient fields filled in, every other
    // placeholder unwrapped, "Now" and the date words computed, the marks removed and double
    // blanks collapsed once. Sets senderInformationMissing() when a sender placeholder needs a
    // field that is empty; it is never cleared here, so it covers every expansion since the
    // last clearSenderInformationMissing().
    QString expandForSending(const QString& text, const RecipientInfo& recipient);

    // The first step of expandForSending alone: the walk over the brackets. Sender and
    // recipient placeholders become their fields (marks inside a field turned into "<" ">"),
    // every copy of a replaced placeholder at once; any other placeholder gets "<" ">" for its
    // brackets. Time linear in the text, whatever its brackets.
    QString fillPersonPlaceholders(const QString& text, const RecipientInfo& recipient);

    bool senderInformationMissing() const { return senderInformationMissing_; }
    void clearSenderInformationMissing() { senderInformationMissing_ = false; }

    // A template body as composer text: computed variables stay "[name:value]", every other
    // placeholder becomes "<value>"; an empty value is replaced by the variable's default (or by
    // its name when it has none).
    static QString templateToComposerText(const QString& body);
    // The composer text with the stored template `templateName` put in at `caret`; the caret
    // after the inserted text is stored in *caretAfter when given.
    static QString insertTemplate(const QString& templateName, const QString& text, int caret,
                                  int* caretAfter = nullptr);

    // The template editor's marks back to stored placeholders: each "<value>" becomes
    // "[variable:value]"; a value whose variable cannot be found becomes "[value]".
    static QString markersToPlaceholders(const QString& text);
    // The same, asking `findVariable` for each marked value in turn, left to right.
    // Time linear in the text, whatever its marks, when the finder's time does not grow with
    // the length of the value it is given (a value can reach far: "<<<...>>>").
    using VariableFinder = std::function<std::optional<VariableMatch>(QStringView value)>;
    static QString markersToPlaceholders(const QString& text, const VariableFinder& findVariable);
    // The template editor's save: markers to placeholders that keep the names the template was
    // loaded with. A mark takes the name of the loaded placeholder at the same place among the
    // list placeholders when the value is the same, else of a loaded placeholder with that
    // value, else the variable found for it, spelt as the loaded template spells that name.
    // So a template saved unchanged keeps "[Time span:30 minutes]" although the built-in name
    // is "Time Span", and a user variable whose value is also another variable's keeps its own.
    static QString editorTextToBody(const QString& text, const QString& loadedBody);

    // "Time" words to "%02d:%02d" from now (the hour is not wrapped: 23:50 in 15 minutes is
    // 24:05); "Date" words to " on %04d-%02d-%02d". Any other variable gives the word unchanged.
    static QString computeValue(const QString& variable, const QString& word);

    // A sender field for a person-field name (compared without regard to case); *missing is set
    // when the field it needs is empty. A name that is no person field gives empty text.
    static QString senderField(const SenderInfo& sender, const QString& field, bool* missing);
    // The same for the recipient record ("Name and Phone" is "%s, %s" of full name and phone).
    static QString recipientField(const RecipientInfo& recipient, const QString& field);
    // The same for a contact picked from the phone book ("Name and Phone" is "%s,%s", no blank);
    // nullopt when `field` is no person field.
    static std::optional<QString> contactField(const RecipientInfo& contact, const QString& field);

private:
    SenderInfo sender_;
    bool senderInformationMissing_ = false;
};

} // namespace tessaly::sms
