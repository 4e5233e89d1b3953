// The XML of Android's "SMS Backup & Restore" app: <smses count="N"> holding <sms .../>
// elements (and <mms> ones, which are skipped and counted).

#include "suite/telephony/archive/backup_xml.h"

#include "suite/telephony/archive/character_references.h"
#include "suite/telephony/archive/utf8.h"

#include "gsm/sms.h"

#include <QDateTime>
#include <QIODevice>
#include <QLocale>
#include <QXmlStreamReader>

namespace tessaly::telephony::archive {
namespace {

constexpr qint64 kChunkBytes = 256 * 1024;

// The app's message types.
enum BackupType { Received = 1, Sent = 2, Draft = 3, Outbox = 4, Failed = 5, Queued = 6 };

// The app writes "null" where a value is missing.
QStringView present(QStringView value) {
    return value == u"null" ? QStringView() : value;
}

class BackupXmlReader final : public MessageReader {
public:
    explicit BackupXmlReader(QIODevice& device)
        : device_(device) {}

    Step next(ArchivedMessage& message) override {
        for (;;) {
            const QXmlStreamReader::TokenType token = xml_.readNext();
            if (xml_.error() == QXmlStreamReader::PrematureEndOfDocumentError) {
                if (feed())
                    continue;
                if (rootClosed_)
                    return Step::Finished;
                return fail(rootSeen_ ? QStringLiteral("the file ends before </smses>")
                                      : QStringLiteral("the file holds no <smses> element"));
            }
            if (xml_.hasError())
                return fail(xml_.errorString());
            switch (token) {
            case QXmlStreamReader::StartElement:
                ++depth_;
                if (depth_ == 1) {
                    if (xml_.name() != u"smses")
                        return fail(QStringLiteral("not an SMS backup: the file starts with <%1>")
                                        .arg(xml_.name()));
                    rootSeen_ = true;
                } else if (depth_ == 2 && xml_.name() == u"sms") {
                    return readSms(message) ? Step::Message : Step::Skipped;
                } else if (depth_ == 2 && xml_.name() == u"mms") {
                    ++skippedMms_;
                    return Step::Skipped;
                }
                break;
            case QXmlStreamReader::EndElement:
                if (--depth_ == 0)
                    rootClosed_ = true;
                break;
            case QXmlStreamReader::EndDocument:
                return Step::Finished;
            default:
                break;
            }
        }
    }

    qint64 skippedMms() const override { return skippedMms_; }

private:
    // False at the end of the file.
    bool feed() {
        if (ended_)
            return false;
        const QByteArray chunk = device_.read(kChunkBytes);
        ended_ = chunk.isEmpty();
        const QByteArray filtered = filter_.filter(chunk, ended_);
        if (!filtered.isEmpty())
            xml_.addData(filtered);
        return !filtered.isEmpty() || !ended_;
    }

    Step fail(const QString& reason) {
        error_.line = xml_.lineNumber();
        error_.column = xml_.columnNumber();
        error_.reason = reason;
        return Step::Failed;
    }

    bool readSms(ArchivedMessage& message) {
        const QXmlStreamAttributes attributes = xml_.attributes();
        bool typeOk = false;
        bool dateOk = false;
        const int type = attributes.value(QLatin1String("type")).toInt(&typeOk);
        const qint64 date = attributes.value(QLatin1String("date")).toLongLong(&dateOk);
        message = ArchivedMessage();
        if (!typeOk || !dateOk || !localTicksFromUtcMilliseconds(date, &message.dateTicks))
            return false;
        switch (type) {
        case Received:
            message.folder = GSM::Sms::FolderInbox;
            message.status = attributes.value(QLatin1String("read")) == u"0" ? GSM::Message::Unread
                                                                             : GSM::Message::Read;
            break;
        case Sent:
            message.folder = GSM::Sms::FolderOutbox;
            message.status = GSM::Message::Sent;
            break;
        case Failed:
            message.folder = GSM::Sms::FolderOutbox;
            message.status = GSM::Message::Failed;
            break;
        case Draft:
        case Outbox:
        case Queued:
            // An import never sends anything.
            message.folder = GSM::Sms::FolderOutbox;
            message.status = GSM::Message::NotSent;
            break;
        default:
            return false;
        }
        const QStringView address = present(attributes.value(QLatin1String("address")));
        for (QStringView number : address.split(u'~')) {
            number = present(number.trimmed());
            if (!number.isEmpty())
                message.numbers.push_back(unescapeCodeUnits(number));
        }
        message.serviceCentre =
            unescapeCodeUnits(present(attributes.value(QLatin1String("service_center"))));
        message.text = unescapeCodeUnits(attributes.value(QLatin1String("body")));
        return true;
    }

    QIODevice& device_;
    QXmlStreamReader xml_;
    CharacterReferenceFilter filter_;
    int depth_ = 0;
    bool rootSeen_ = false;
    bool rootClosed_ = false;
    bool ended_ = false;
    qint64 skippedMms_ = 0;
};

class BackupXmlWriter final : public MessageWriter {
public:
    explicit BackupXmlWriter(QIODevice& device)
        : device_(device) {}

    void begin(qint64 count) override {
        device_.write("<?xml version='1.0' encoding='UTF-8' standalone='yes' ?>\n"
                      "<!--Exported by tessaly-phone-->\n");
        device_.write(QByteArrayLiteral("<smses count=\"") + QByteArray::number(count) + "\">\n");
    }

    void write(const ArchivedMessage& message) override {
        line_.clear();
        const qint64 date = utcMillisecondsFromLocalTicks(message.dateTicks);
        line_.append("  <sms protocol=\"0\" address=\"");
        for (size_t i = 0; i < message.numbers.size(); ++i) {
            if (i)
                line_.append('~');
            appendAttributeText(line_, message.numbers[i]);
        }
        line_.append("\" date=\"").append(QByteArray::number(date));
        line_.append("\" type=\"").append(QByteArray::number(backupType(message)));
        line_.append("\" subject=\"null\" body=\"");
        appendAttributeText(line_, message.text);
        line_.append("\" toa=\"null\" sc_toa=\"null\" service_center=\"");
        if (message.serviceCentre.empty())
            line_.append("null");
        else
            appendAttributeText(line_, message.serviceCentre);
        line_.append("\" read=\"").append(message.status == GSM::Message::Unread ? "0" : "1");
        line_.append("\" status=\"").append(message.status == GSM::Message::Failed ? "64" : "-1");
        line_.append("\" locked=\"0\" date_sent=\"0\" readable_date=\"");
        line_.append(QLocale::c()
                         .toString(QDateTime::fromMSecsSinceEpoch(date).toLocalTime(),
                                   QStringLiteral("MMM d, yyyy h:mm:ss AP"))
                         .toUtf8());
        line_.append("\" contact_name=\"(Unknown)\" />\n");
        device_.write(line_);
    }

    void finish() override { device_.write("</smses>\n"); }

private:
    static int backupType(const ArchivedMessage& message) {
        if (message.folder == GSM::Sms::FolderInbox)
            return Received;
        switch (message.status) {
        case GSM::Message::Sent:
            return Sent;
        case GSM::Message::Failed:
            return Failed;
        case GSM::Message::SendNow:
            return Queued;
        default:
            return Draft;
        }
    }

    // Markup characters and line breaks as references (a line break written out would become
    // a space when read back); a pair of surrogates as the character they make; anything that is
    // not an XML character (a lone surrogate, a control character) as a reference of its own.
    static void appendAttributeText(QByteArray& out, const std::u16string& text) {
        for (size_t i = 0; i < text.size(); ++i) {
            const char16_t c = text[i];
            switch (c) {
            case u'&':
                out.append("&amp;");
                continue;
            case u'<':
                out.append("&lt;");
                continue;
            case u'>':
                out.append("&gt;");
                continue;
            case u'"':
                out.append("&quot;");
                continue;
            default:
                break;
            }
            const bool high = c >= 0xD800 && c <= 0xDBFF;
            if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
                appendUtf8(out, 0x10000 + ((char32_t(c) - 0xD800) << 10) + (text[i + 1] - 0xDC00));
                ++i;
            } else if (c < 0x20 || (c >= 0xD800 && c <= 0xDFFF) || c == 0xFFFE || c == 0xFFFF) {
                out.append("&#").append(QByteArray::number(int(c))).append(';');
            } else {
                appendUtf8(out, c);
            }
        }
    }

    QIODevice& device_;
    QByteArray line_;
};

} // namespace

std::unique_ptr<MessageReader> makeBackupXmlReader(QIODevice& device) {
    return std::make_unique<BackupXmlReader>(device);
}

std::unique_ptr<MessageWriter> makeBackupXmlWriter(QIODevice& device) {
    return std::make_unique<BackupXmlWriter>(device);
}

} // namespace tessaly::telephony::archive
