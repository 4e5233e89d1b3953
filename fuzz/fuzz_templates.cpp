// Fuzz target for placeholder handling: arbitrary text through the send-time expansion and the
// template editor's marks-to-placeholders conversion. Both must end and never crash, whatever
// the brackets, colons and person names. libFuzzer entry point; tests/templates replays it.

#include "framework/datadir.h"
#include "framework/registry/profile.h"
#include "framework/resources/resources.h"
#include "resources/sms_resources.h"
#include "templates/factory_defaults.h"
#include "templates/placeholder_expander.h"

#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

namespace {

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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool ready = prepareStore();
    (void)ready;
    // The first byte picks the person fields: plain, empty, or themselves full of marks.
    const std::uint8_t mode = size > 0 ? data[0] : 0;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));

    tessaly::sms::SenderInfo sender{QStringLiteral("Ann"), QStringLiteral("Lee"),
                                    QStringLiteral("+4912")};
    tessaly::sms::RecipientInfo recipient{QStringLiteral("Bob"), QStringLiteral("Marsh"),
                                          QStringLiteral("Bob Marsh"), QStringLiteral("BM"),
                                          QStringLiteral("+111")};
    if (mode % 3 == 1) {
        sender = {};
        recipient = {};
    } else if (mode % 3 == 2) {
        sender.firstName = text.left(16);
        recipient.fullName = text.right(16);
    }
    tessaly::sms::PlaceholderExpander expander(sender);
    const QString sent = expander.expandForSending(text, recipient);
    // The expansion removes every mark.
    if (sent.contains(u'[') || sent.contains(u']') || sent.contains(u'<') || sent.contains(u'>'))
        __builtin_trap();
    const QString body = tessaly::sms::PlaceholderExpander::markersToPlaceholders(text);
    (void)body;
    return 0;
}
