// Fuzz target for placeholder handling: arbitrary text through the send-time expansion and the
// template editor's marks-to-placeholders conversion. Both must end and never crash, whatever
// the brackets, colons and person names, and the bracket walk and the marks conversion must give
// exactly what the simple versions below give. libFuzzer entry point; tests/templates replays it.

#include "framework/datadir.h"
#include "framework/registry/profile.h"
#include "framework/resources/resources.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "templates/factory_defaults.h"
#include "templates/placeholder_expander.h"
#include "templates/placeholder_texts.h"
#include "templates/template_store.h"

#include <QTemporaryDir>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

using tessaly::sms::PlaceholderExpander;
using tessaly::sms::RecipientInfo;
using tessaly::sms::SenderInfo;
using tessaly::sms::VariableMatch;

// The simple walk and the simple marks conversion are quadratic on hostile text; above this size
// only the linear versions run.
constexpr std::size_t kLargestForSlowSteps = 64 * 1024;

// A private profile with the factory variables, so that marks find their variables.
bool prepareStore() {
    static QTemporaryDir dir;
    tessaly::setDataDirectory(dir.path());
    tessaly::profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
    tessaly::profile::setProfileName(QStringLiteral("SMS"));
    tessaly::setCurrentResources(&tessaly::sms::resources());
    tessaly::sms::seedFactoryDefaults();
    return true;
}

// The walk as first written, kept as the oracle: each round takes the first "[" and the first
// "]" after it, turns their brackets into "<" ">", or replaces every copy of a sender or
// recipient placeholder in the whole text by its field.
QString simpleWalk(const QString& text, const SenderInfo& senderInfo,
                   const RecipientInfo& recipient, bool* missing) {
    const QString colon = tessaly::sms::placeholderColon();
    const QString sender = tessaly::loadString(IDS_VAR_SENDER);
    const QString recipientName = tessaly::loadString(IDS_VAR_RECIPIENT);
    QString out = text;
    qsizetype from = 0;
    for (;;) {
        const qsizetype open = out.indexOf(u'[', from);
        const qsizetype close = open < 0 ? -1 : out.indexOf(u']', open + 1);
        if (close < 0)
            break;
        const QString inner = out.mid(open + 1, close - open - 1);
        const qsizetype split = inner.indexOf(colon);
        const QString name = split >= 0 ? inner.left(split) : inner;
        const QString value = split >= 0 ? inner.mid(split + colon.size()) : QString();
        const bool isSender = split >= 0 && !sender.isEmpty() && name == sender;
        const bool isRecipient = split >= 0 && !recipientName.isEmpty() && name == recipientName;
        if (!isSender && !isRecipient) {
            out[open] = u'<';
            out[close] = u'>';
            from = open + 1;
            continue;
        }
        QString replacement = isSender
                                  ? PlaceholderExpander::senderField(senderInfo, value, missing)
                                  : PlaceholderExpander::recipientField(recipient, value);
        replacement.replace(u'[', u'<').replace(u']', u'>');
        out.replace(out.mid(open, close - open + 1), replacement);
        from = open;
    }
    return out;
}

// Marks back to placeholders as first written, kept as the oracle: each round searches the
// whole text again for the first "<" and the ">" after it, and replaces the text between them.
QString simpleMarks(const QString& text, const PlaceholderExpander::VariableFinder& findVariable) {
    const QString colon = tessaly::sms::placeholderColon();
    QString out = text;
    for (qsizetype round = 0; round < text.size(); ++round) {
        const qsizetype open = out.indexOf(u'<');
        if (open < 0)
            break;
        out[open] = u'[';
        const qsizetype close = out.indexOf(u'>', open + 1);
        if (close < 0)
            continue;
        out[close] = u']';
        const QString inner = out.mid(open + 1, close - open - 1);
        if (const std::optional<VariableMatch> match = findVariable(inner))
            out.replace(open + 1, inner.size(), match->name + colon + match->value);
    }
    return out;
}

// A finder whose answers bring new marks in ("a" is the variable "x<", "b" has the value "b>")
// or are longer than the mark they replace (the empty mark); any other value as the store
// answers it. Counts its calls.
struct AwkwardFinder {
    const tessaly::sms::VariableLookup& lookup;
    int* calls;

    std::optional<VariableMatch> operator()(QStringView value) const {
        ++*calls;
        if (value == u"a")
            return VariableMatch{QStringLiteral("x<"), QStringLiteral("a")};
        if (value == u"b")
            return VariableMatch{QStringLiteral("y"), QStringLiteral("b>")};
        if (value.isEmpty())
            return VariableMatch{QStringLiteral("a name longer than the mark it replaces"), {}};
        return lookup.find(value);
    }
};

// Token mode: each byte picks a piece, so that placeholders, half placeholders and repeats of
// the same placeholder turn up far more often than in random text.
QString tokenText(const std::uint8_t* data, std::size_t size) {
    static const std::array<QString, 16> pieces{
        QStringLiteral("["),          QStringLiteral("]"),
        QStringLiteral("Sender:"),    QStringLiteral("Recipient:"),
        QStringLiteral("First Name"), QStringLiteral("Initials"),
        QStringLiteral(":"),          QStringLiteral(" "),
        QStringLiteral("x"),          QStringLiteral("<"),
        QStringLiteral(">"),          QStringLiteral("[Sender:"),
        QStringLiteral("Phone]"),     QStringLiteral("Time:Now"),
        QStringLiteral("[x:y]"),      QStringLiteral("[Recipient:Full Name]")};
    QString text;
    for (std::size_t i = 0; i < size; ++i)
        text += pieces[data[i] % pieces.size()];
    return text;
}

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "fuzz_templates: %s\n", what);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool ready = prepareStore();
    (void)ready;
    // The first byte picks the person fields (plain, empty, or themselves full of marks) and
    // whether the rest is text or tokens.
    const std::uint8_t mode = size > 0 ? data[0] : 0;
    const QString text =
        mode % 6 >= 3 ? tokenText(data + 1, size - 1)
                      : QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));

    SenderInfo sender{QStringLiteral("Ann"), QStringLiteral("Lee"), QStringLiteral("+4912")};
    RecipientInfo recipient{QStringLiteral("Bob"), QStringLiteral("Marsh"),
                            QStringLiteral("Bob Marsh"), QStringLiteral("BM"),
                            QStringLiteral("+111")};
    if (mode % 3 == 1) {
        sender = {};
        recipient = {};
    } else if (mode % 3 == 2) {
        sender.firstName = text.left(16);
        recipient.fullName = text.right(16);
    }
    PlaceholderExpander expander(sender);
    if (size <= kLargestForSlowSteps) {
        bool simpleMissing = false;
        const QString expected = simpleWalk(text, sender, recipient, &simpleMissing);
        if (expander.fillPersonPlaceholders(text, recipient) != expected)
            fail("the bracket walk differs from the simple walk");
        if (expander.senderInformationMissing() != simpleMissing)
            fail("the sender-information flag differs from the simple walk's");
    }
    const QString sent = expander.expandForSending(text, recipient);
    // The expansion removes every mark.
    if (sent.contains(u'[') || sent.contains(u']') || sent.contains(u'<') || sent.contains(u'>'))
        fail("a mark is left in the sent text");
    if (size <= kLargestForSlowSteps) {
        static const tessaly::sms::VariableLookup lookup;
        int calls = 0;
        int simpleCalls = 0;
        const QString body =
            PlaceholderExpander::markersToPlaceholders(text, AwkwardFinder{lookup, &calls});
        if (body != simpleMarks(text, AwkwardFinder{lookup, &simpleCalls}))
            fail("marks to placeholders differs from the simple conversion");
        if (calls != simpleCalls)
            fail("marks to placeholders asks for another number of values");
    }
    // The editor's save, on any size: loaded from the same text, as after a paste into it.
    const QString body = PlaceholderExpander::editorTextToBody(text, text);
    if (body.size() < text.size())
        fail("marks to placeholders lost text");
    return 0;
}
