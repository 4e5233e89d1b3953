#include "suite/telephony/archive/message_csv.h"

#include "suite/telephony/archive/utf8.h"

#include "gsm/sms.h"

#include <QDateTime>
#include <QIODevice>

#include <array>
#include <optional>
#include <vector>

namespace tessaly::telephony::archive {
namespace {

constexpr qint64 kChunkBytes = 256 * 1024;
constexpr std::array<const char*, 6> kColumns = {"folder",  "status",         "date",
                                                 "numbers", "service_centre", "text"};

struct StatusName {
    const char* name;
    int folder;
    GSM::Message::Status status;
};
// "send now" reads back as "not sent": an import never sends anything.
constexpr StatusName kStatusNames[] = {
    {"unread", GSM::Sms::FolderInbox, GSM::Message::Unread},
    {"read", GSM::Sms::FolderInbox, GSM::Message::Read},
    {"replied", GSM::Sms::FolderInbox, GSM::Message::Replied},
    {"forwarded", GSM::Sms::FolderOutbox, GSM::Message::Forwarded},
    {"not sent", GSM::Sms::FolderOutbox, GSM::Message::NotSent},
    {"send now", GSM::Sms::FolderOutbox, GSM::Message::NotSent},
    {"sent", GSM::Sms::FolderOutbox, GSM::Message::Sent},
    {"failed", GSM::Sms::FolderOutbox, GSM::Message::Failed},
};

const char* statusName(const ArchivedMessage& message) {
    if (message.status == GSM::Message::SendNow)
        return "send now";
    for (const StatusName& entry : kStatusNames) {
        if (entry.status == message.status && entry.folder == message.folder)
            return entry.name;
    }
    return message.folder == GSM::Sms::FolderInbox ? "read" : "not sent";
}

class CsvReader final : public MessageReader {
public:
    explicit CsvReader(QIODevice& device)
        : device_(device) {}

    Step next(ArchivedMessage& message) override {
        std::vector<QByteArray> fields;
        for (;;) {
            const qint64 rowLine = line_;
            const std::optional<bool> read = readRow(fields);
            if (!read)
                return Step::Failed;
            if (!*read)
                return headerSeen_ ? Step::Finished : fail(rowLine, 1, "the file is empty");
            if (fields.size() == 1 && fields.front().isEmpty())
                continue; // a blank line
            if (!headerSeen_) {
                if (!isHeader(fields))
                    return fail(rowLine, 1,
                                "not a message CSV: the first row must be "
                                "folder,status,date,numbers,service_centre,text");
                headerSeen_ = true;
                continue;
            }
            return parseRow(fields, rowLine, message);
        }
    }

private:
    Step fail(qint64 line, qint64 column, const QString& reason) {
        error_ = {line, column, reason};
        return Step::Failed;
    }

    // The next byte without taking it, or nothing at the end of the file.
    std::optional<char> peek() {
        if (position_ == buffer_.size()) {
            buffer_ = device_.read(kChunkBytes);
            position_ = 0;
            if (buffer_.isEmpty())
                return std::nullopt;
        }
        return buffer_[position_];
    }

    std::optional<char> take() {
        if (!peek())
            return std::nullopt;
        const char c = buffer_[position_++];
        if (c == '\n') {
            ++line_;
            column_ = 1;
        } else {
            ++column_;
        }
        return c;
    }

    // True with a row, false at the end of the file, nothing (and error_ set) when damaged.
    std::optional<bool> readRow(std::vector<QByteArray>& fields) {
        fields.clear();
        if (!peek())
            return false;
        if (line_ == 1 && column_ == 1 && buffer_.startsWith("\xEF\xBB\xBF"))
            position_ += 3; // a byte-order mark some spreadsheets write
        QByteArray field;
        for (;;) {
            std::optional<char> c = take();
            if (c == '"' && field.isEmpty()) {
                const qint64 quoteLine = line_;
                const qint64 quoteColumn = column_ - 1;
                for (;;) {
                    c = take();
                    if (!c) {
                        fail(quoteLine, quoteColumn,
                             "the file ends inside a quoted field that starts here");
                        return std::nullopt;
                    }
                    if (*c == '"') {
                        if (peek() != '"')
                            break;
                        take();
                    }
                    field.append(*c);
                }
                c = take();
                if (c == '\r' && peek() == '\n')
                    c = take();
                if (c && *c != ',' && *c != '\n') {
                    fail(line_, column_ - 1,
                         "a quoted field must be followed by a comma or the end of the line");
                    return std::nullopt;
                }
            } else {
                while (c && *c != ',' && *c != '\n') {
                    if (*c == '\r' && peek() == '\n') {
                        c = take();
                        break;
                    }
                    field.append(*c);
                    c = take();
                }
            }
            fields.push_back(field);
            field.clear();
            if (!c || *c == '\n')
                return true;
        }
    }

    static bool isHeader(const std::vector<QByteArray>& fields) {
        if (fields.size() != kColumns.size())
            return false;
        for (size_t i = 0; i < fields.size(); ++i) {
            if (fields[i].trimmed().toLower() != kColumns[i])
                return false;
        }
        return true;
    }

    Step parseRow(const std::vector<QByteArray>& fields, qint64 line, ArchivedMessage& message) {
        if (fields.size() != kColumns.size())
            return fail(line, 1,
                        QStringLiteral("a row has %1 fields; %2 are expected")
                            .arg(fields.size())
                            .arg(kColumns.size()));
        message = ArchivedMessage();
        const QByteArray folder = fields[0].trimmed().toLower();
        if (folder == "inbox")
            message.folder = GSM::Sms::FolderInbox;
        else if (folder == "outbox")
            message.folder = GSM::Sms::FolderOutbox;
        else
            return fail(line, 1, QStringLiteral("unknown folder \"%1\"").arg(fields[0]));
        const QByteArray status = fields[1].trimmed().toLower();
        const StatusName* found = nullptr;
        for (const StatusName& entry : kStatusNames) {
            if (status == entry.name && entry.folder == message.folder)
                found = &entry;
        }
        if (!found)
            return fail(line, 1,
                        QStringLiteral("status \"%1\" is not one of the %2")
                            .arg(fields[1], QString::fromLatin1(fields[0])));
        message.status = found->status;
        const QDateTime date =
            QDateTime::fromString(QString::fromUtf8(fields[2].trimmed()), Qt::ISODateWithMs);
        if (!date.isValid() ||
            !localTicksFromUtcMilliseconds(date.toMSecsSinceEpoch(), &message.dateTicks))
            return fail(
                line, 1,
                QStringLiteral("\"%1\" is not an ISO 8601 date from 1601 to 9999").arg(fields[2]));
        for (const QByteArray& number : fields[3].split(';')) {
            const QByteArray trimmed = number.trimmed();
            if (!trimmed.isEmpty())
                message.numbers.push_back(fromWtf8(trimmed));
        }
        message.serviceCentre = fromWtf8(fields[4]);
        message.text = fromWtf8(fields[5]);
        return Step::Message;
    }

    QIODevice& device_;
    QByteArray buffer_;
    qsizetype position_ = 0;
    qint64 line_ = 1;
    qint64 column_ = 1;
    bool headerSeen_ = false;
};

class CsvWriter final : public MessageWriter {
public:
    explicit CsvWriter(QIODevice& device)
        : device_(device) {}

    void begin(qint64) override {
        device_.write("folder,status,date,numbers,service_centre,text\r\n");
    }

    void write(const ArchivedMessage& message) override {
        row_.clear();
        row_.append(message.folder == GSM::Sms::FolderInbox ? "inbox," : "outbox,");
        row_.append(statusName(message)).append(',');
        const QDateTime local =
            QDateTime::fromMSecsSinceEpoch(utcMillisecondsFromLocalTicks(message.dateTicks));
        row_.append(
            local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODateWithMs).toUtf8());
        row_.append(',');
        QByteArray numbers;
        for (size_t i = 0; i < message.numbers.size(); ++i) {
            if (i)
                numbers.append(';');
            appendWtf8(numbers, message.numbers[i]);
        }
        appendQuoted(numbers);
        row_.append(',');
        QByteArray centre;
        appendWtf8(centre, message.serviceCentre);
        appendQuoted(centre);
        row_.append(',');
        QByteArray text;
        appendWtf8(text, message.text);
        appendQuoted(text);
        row_.append("\r\n");
        device_.write(row_);
    }

    void finish() override {}

private:
    void appendQuoted(const QByteArray& field) {
        row_.append('"');
        for (const char c : field) {
            if (c == '"')
                row_.append('"');
            row_.append(c);
        }
        row_.append('"');
    }

    QIODevice& device_;
    QByteArray row_;
};

} // namespace

std::unique_ptr<MessageReader> makeCsvReader(QIODevice& device) {
    return std::make_unique<CsvReader>(device);
}

std::unique_ptr<MessageWriter> makeCsvWriter(QIODevice& device) {
    return std::make_unique<CsvWriter>(device);
}

} // namespace tessaly::telephony::archive
